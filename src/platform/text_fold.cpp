#include "platform/text_fold.h"

namespace velloria::platform {
namespace {

/// The narrow or wide form under which Unicode knows the same character, else `unit` itself.
char16_t otherWidth(char16_t unit) {
    if (unit == 0xFF9E || unit == 0xFF9F) // Unicode has the combining marks here, which nobody types
        return char16_t(unit - 0xFF9E + 0x309B);
    const QChar::Decomposition tag = QChar(unit).decompositionTag();
    return tag == QChar::Wide || tag == QChar::Narrow ? QChar(unit).decomposition().front().unicode() : unit;
}

/// Four katakana with a sound mark have no hiragana and stay.
char16_t hiragana(char16_t unit) {
    const bool hasHiragana = (unit >= 0x30A1 && unit <= 0x30F6) || unit == 0x30FD || unit == 0x30FE;
    return hasHiragana ? char16_t(unit - 0x60) : unit;
}

/// Written to the code page as another character, as which it comes back.
char16_t comesBackAs(char16_t unit) {
    switch (unit) {
    case 0x2016:
        return 0x2225;
    case 0x2212:
        return u'-';
    case 0x301C:
        return u'~';
    default:
        return unit;
    }
}

} // namespace

FoldTable::FoldTable() {
    for (unsigned unit = 0; unit < m_fold.size(); ++unit) {
        const char16_t folded = comesBackAs(hiragana(otherWidth(char16_t(unit))));
        m_fold[unit] = QChar::isSurrogate(unit) ? char16_t(unit) : QChar(folded).toLower().unicode();
    }
}

const FoldTable& FoldTable::instance() {
    static const FoldTable table;
    return table;
}

char16_t FoldTable::composed(char16_t kana, char16_t mark) {
    const bool isHaRow = kana >= 0xFF8A && kana <= 0xFF8E;
    const bool isKaToRow = kana >= 0xFF76 && kana <= 0xFF84;
    if (mark == 0xFF9F)
        return isHaRow ? char16_t(0x306F + (kana - 0xFF8A) * 3 + 2) : char16_t(0);
    if (mark != 0xFF9E)
        return 0;
    if (isHaRow || isKaToRow) // the voiced kana stands behind its plain one
        return char16_t(instance()[kana] + 1);
    switch (kana) {
    case 0xFF73:
        return 0x3094;
    case 0xFF9C:
        return 0x30F7;
    case 0xFF66:
        return 0x30FA;
    default:
        return 0;
    }
}

QString fold(QStringView text) {
    const FoldTable& table = FoldTable::instance();
    QString folded(text.size(), Qt::Uninitialized);
    QChar* out = folded.data();
    const char16_t* const end = text.utf16() + text.size();
    for (const char16_t* unit = text.utf16(); unit != end; ++unit) {
        char16_t both = 0;
        if (FoldTable::takesMark(*unit) && unit + 1 != end)
            both = FoldTable::composed(*unit, unit[1]);
        *out++ = QChar(both ? both : table[*unit]);
        unit += both ? 1 : 0;
    }
    folded.truncate(out - folded.constData());
    return folded;
}

bool equalText(QStringView left, QStringView right) {
    FoldReader l{Utf16Characters(left)};
    FoldReader r{Utf16Characters(right)};
    while (!l.atEnd() && !r.atEnd()) {
        if (l.next() != r.next())
            return false;
    }
    return l.atEnd() && r.atEnd();
}

} // namespace velloria::platform
