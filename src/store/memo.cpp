#include "store/memo.h"

namespace velloria::store {
namespace {

bool isSame(const QString& left, const QString& right) {
    return left.isNull() == right.isNull() && left == right;
}

} // namespace

bool holdSame(const Memo& left, const Memo& right) {
    return left.no == right.no && left.isLocked == right.isLocked && isSame(left.publishTime, right.publishTime) &&
           isSame(left.title, right.title) && isSame(left.category, right.category) && isSame(left.text, right.text);
}

bool mayBeLocked(const Memo& memo) {
    return memo.isLocked || memo.no.value_or(0) <= 0;
}

} // namespace velloria::store
