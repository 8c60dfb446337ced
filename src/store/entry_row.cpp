#include "store/entry_row.h"

namespace velloria::store {

Entry readEntry(const sqlite::Statement& row) {
    Entry entry;
    entry.day = row.text(0);
    entry.number = row.integer(1);
    entry.title = row.text(2);
    entry.contents = row.text(3);
    entry.extend = row.text(4);
    entry.excerpt = row.text(5);
    entry.weather = row.text(6);
    entry.genre = row.text(7);
    entry.publishTime = row.text(8);
    entry.isPrivate = row.boolean(9);
    entry.importMark = row.text(10);
    return entry;
}

} // namespace velloria::store
