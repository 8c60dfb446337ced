#include "blog/template_findings.h"

#include "core/numbers.h"
#include "platform/failure.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr qsizetype kFarLetters = 3; ///< so many letters make another word

/// How many letters must be changed, added or taken away.
qsizetype lettersBetween(const QString& left, const QString& right) {
    if (qAbs(left.size() - right.size()) >= kFarLetters)
        return kFarLetters;
    std::vector<qsizetype> row(std::size_t(right.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < left.size(); ++i) {
        qsizetype diagonal = row[0]++;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const qsizetype changed = diagonal + (left[i] == right[qsizetype(j) - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

bool isPlainNumber(const QString& text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

std::optional<qint16> indexOf(const QString& text) {
    try {
        return core::cint(text);
    } catch (const platform::Failure&) {
        return std::nullopt;
    }
}

} // namespace

TemplateFindings::TemplateFindings(const QByteArray& bytes)
    : m_profile(platform::ProfileFile::fromBytes(bytes)) {}

void TemplateFindings::error(const core::Setting& row, const QString& text) {
    add(TemplateFinding::Kind::Error, row.name.toString(), isThere(row) ? value(row) : QString(), text);
}

void TemplateFindings::hint(const core::Setting& row, const QString& text) {
    add(TemplateFinding::Kind::Hint, row.name.toString(), isThere(row) ? value(row) : QString(), text);
}

void TemplateFindings::add(TemplateFinding::Kind kind, const QString& key, const QString& value, const QString& text) {
    m_all.push_back({kind, key, value, text});
}

QString TemplateFindings::value(const core::Setting& row) const {
    return m_profile.valueOr(row.section.toString(), row.name.toString(), row.whenMissing.toString());
}

bool TemplateFindings::isThere(const core::Setting& row) const {
    return m_profile.value(row.section.toString(), row.name.toString()).has_value();
}

std::optional<qint32> TemplateFindings::number(const core::Setting& row) const {
    return m_profile.number(row.section.toString(), row.name.toString());
}

bool TemplateFindings::isMisspelt(const core::Setting& row, const QList<QStringView>& words) {
    const QString text = value(row);
    const auto meant =
        std::ranges::find_if(words, [&](QStringView word) { return text.compare(word, Qt::CaseInsensitive) == 0; });
    if (meant == words.end() || text == *meant)
        return false;
    error(row, u"大文字と小文字は区別されます。「%1」と書いてください。"_s.arg(*meant));
    return true;
}

bool TemplateFindings::isWord(const core::Setting& row, const QList<QStringView>& known, const QString& otherwise,
                              TemplateFinding::Kind kind) {
    const QString text = value(row);
    if (known.contains(text))
        return true;
    if (isMisspelt(row, known))
        return false;
    QStringList words;
    for (const QStringView word : known)
        words += word.toString();
    const QString meant = nearestWord(text, words);
    if (text.isEmpty())
        add(kind, row.name.toString(), text, u"値が空です。%1"_s.arg(otherwise));
    else if (!meant.isEmpty())
        error(row, u"知らない言葉です。「%1」の書きまちがいではありませんか。%2"_s.arg(meant, otherwise));
    else
        add(kind, row.name.toString(), text,
            u"知らない言葉です (使えるもの: %1)。%2"_s.arg(words.join(u"、"_s), otherwise));
    return false;
}

void TemplateFindings::wantIndex(const core::Setting& row) {
    const QString text = value(row);
    const std::optional<qint16> index = indexOf(text);
    if (!index)
        error(row, u"0から32767までの番号が要ります。ここでエラーになります。"_s);
    else if (*index < 0)
        error(row, u"番号は0から数えます。マイナスの番号の要素はありません。"_s);
    else if (!isPlainNumber(text))
        hint(row, u"%1番として扱われます。数字だけで書いてください。"_s.arg(*index));
}

bool TemplateFindings::wantValue(const core::Setting& row, const QString& why) {
    if (!isEmpty(row))
        return true;
    error(row, (isThere(row) ? u"値が空です。"_s : u"キーがありません。"_s) + why);
    return false;
}

QString nearestWord(const QString& text, const QStringList& words) {
    const auto distance = [lower = text.toLower()](const QString& word) {
        // Short words are all alike.
        return word.size() <= kFarLetters ? kFarLetters : lettersBetween(lower, word.toLower());
    };
    const auto nearest = std::ranges::min_element(words, {}, distance);
    return nearest == words.end() || distance(*nearest) >= kFarLetters ? QString() : *nearest;
}

} // namespace velloria::blog
