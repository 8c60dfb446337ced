#include "blog/template_check.h"

#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "core/blog_keys.h"
#include "core/path_names.h"
#include "platform/code_page.h"
#include "platform/profile_listing.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace keys = core::keys::blog_template;
using core::Setting;
using platform::ListedLine;
using Kind = TemplateFinding::Kind;

constexpr std::size_t kMostFindingsOfLines = 100;
constexpr qsizetype kShownLetters = 60;

std::vector<Setting> allKeys() {
    std::vector<Setting> rows(keys::kAllButSwitches.begin(), keys::kAllButSwitches.end());
    for (const keys::SwitchRows& part : keys::kSwitches)
        rows.insert(rows.end(), {part.type, part.yes, part.no, part.radioYes, part.radioNo});
    return rows;
}

bool isSame(QStringView left, QStringView right) {
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

bool isKnownSection(const QString& section) {
    return isSame(section, keys::kBlog.section) || isSame(section, keys::kSimple.name);
}

QString shown(const QString& text) {
    return text.size() <= kShownLetters ? text : text.left(kShownLetters) + u"…"_s;
}

/// What other programs take for a remark behind a value.
bool hasRemark(const QString& value) {
    return value.contains(u" ;"_s) || value.contains(u"\t;"_s);
}

/// The lines of the file, without regard to what the keys mean.
class Lines {
public:
    Lines(TemplateFindings& findings, const QByteArray& bytes)
        : m_findings(findings)
        , m_keys(allKeys())
        , m_lines(platform::listProfile(bytes)) {
        for (const Setting& row : m_keys)
            m_names += row.name.toString();
    }

    bool hasKeys() const {
        return std::ranges::any_of(m_lines, [this](const ListedLine& line) {
            return line.kind == ListedLine::Kind::Key && rowOf(line.name) != nullptr;
        });
    }

    void check() {
        for (const ListedLine& line : m_lines) {
            if (m_told == kMostFindingsOfLines) {
                m_findings.add(Kind::Error, {}, {}, u"ほかの行にもまちがいがあります。"_s);
                return;
            }
            switch (line.kind) {
            case ListedLine::Kind::Section:
                checkSection(line);
                break;
            case ListedLine::Kind::Key:
                checkKey(line);
                break;
            case ListedLine::Kind::Lost:
                tell(Kind::Hint, line, {},
                     u"キーでもセクションでもないので、読まれません。説明なら「;」で始めます。"_s);
                break;
            }
        }
    }

private:
    const Setting* rowOf(const QString& name) const {
        const auto found = std::ranges::find_if(m_keys, [&](const Setting& row) { return isSame(row.name, name); });
        return found == m_keys.end() ? nullptr : &*found;
    }

    void tell(Kind kind, const ListedLine& line, const QString& key, const QString& text) {
        const QString value = line.kind == ListedLine::Kind::Section ? u'[' + line.section + u']' : line.value;
        m_findings.add(kind, key, shown(value), u"%1行目: %2"_s.arg(line.number).arg(text));
        ++m_told;
    }

    void checkSection(const ListedLine& line) {
        m_isSectionRead = line.isRead;
        if (!isKnownSection(line.section))
            tell(Kind::Hint, line, {}, u"知らないセクションです。使われるのは [General] と [Simple] だけです。"_s);
        else if (!line.isRead)
            tell(Kind::Error, line, {}, u"同じ名前のセクションがもうあります。このセクションは読まれません。"_s);
    }

    void checkKey(const ListedLine& line) {
        const Setting* row = rowOf(line.name);
        const bool isInOwnSection = row && isSame(row->section, line.section);
        if (!row && isKnownSection(line.section))
            tellUnknown(line);
        else if (row && !isInOwnSection)
            tell(Kind::Error, line, line.name,
                 u"[%1] に書くキーです。ここにあるものは読まれません。"_s.arg(row->section));
        else if (row && m_isSectionRead && !line.isRead)
            tellRepeated(line, *row);
        else if (row && line.isRead && m_findings.value(*row).size() < line.value.size())
            tell(Kind::Error, line, line.name, u"値が長すぎます。255バイト (全角で127文字) で切れます。"_s);
        else if (row && line.isRead && hasRemark(line.value))
            tell(Kind::Hint, line, line.name, u"値の後ろに説明は書けません。「;」から後ろも値になります。"_s);
    }

    void tellUnknown(const ListedLine& line) {
        const QString meant = nearestWord(line.name, m_names);
        if (meant.isEmpty())
            tell(Kind::Hint, line, shown(line.name), u"知らないキーです。使われません。"_s);
        else
            tell(Kind::Error, line, shown(line.name),
                 u"知らないキーです。「%1」の書きまちがいではありませんか。"_s.arg(meant));
    }

    void tellRepeated(const ListedLine& line, const Setting& row) {
        const auto first = std::ranges::find_if(m_lines, [&](const ListedLine& other) {
            return other.kind == ListedLine::Kind::Key && other.isRead && isSame(other.name, line.name) &&
                   isSame(other.section, line.section);
        });
        const bool isEqual = first->value == line.value;
        tell(isEqual ? Kind::Hint : Kind::Error, line, row.name.toString(),
             u"同じキーが%1行目にあり、そちらが使われます。"_s.arg(first->number));
    }

    TemplateFindings& m_findings;
    const std::vector<Setting> m_keys;
    const std::vector<ListedLine> m_lines;
    QStringList m_names;
    bool m_isSectionRead = false;
    std::size_t m_told = 0;
};

/// The line of the first byte that is no character of the code page, 0 for none.
int unreadableLine(const QByteArray& bytes) {
    for (qsizetype at = 0; at < bytes.size();) {
        const int length = platform::characterLength(bytes, at);
        const unsigned first = uchar(bytes[at]);
        if (!platform::isCode(length == 2 ? first * 0x100 + uchar(bytes[at + 1]) : first))
            return int(bytes.first(at).count('\n')) + 1;
        at += length;
    }
    return 0;
}

/// Whether the text is Japanese in UTF-8. Half-width kana of the code page alone may look like letters of two bytes.
bool isUtf8(const QByteArray& bytes) {
    const bool hasLongCharacter = std::ranges::any_of(bytes, [](char c) { return uchar(c) >= 0xE0; });
    return hasLongCharacter && bytes.isValidUtf8();
}

/// Whether there is a text to look at.
bool checkText(TemplateFindings& findings, const QByteArray& bytes) {
    const auto refuse = [&](const QString& text) {
        findings.add(Kind::Error, {}, {}, text);
        return false;
    };
    if (bytes.size() > kMostTemplateBytes)
        return refuse(u"ファイルが大きすぎます。テンプレートは1MBまでです。"_s);
    if (bytes.trimmed().isEmpty())
        return refuse(u"ファイルが空です。"_s);
    if (bytes.contains('\0'))
        return refuse(u"テキストではありません。Shift_JISのテキストで保存してください。"_s);
    if (isUtf8(bytes))
        findings.add(Kind::Error, {}, {},
                     u"文字コードがUTF-8です。全角の文字は読めません。Shift_JISで保存してください。"_s);
    else if (const int line = unreadableLine(bytes))
        findings.add(Kind::Error, {}, {}, u"%1行目: Shift_JISでない文字があり、読めません。"_s.arg(line));
    return true;
}

void checkFileName(TemplateFindings& findings, const QString& fileName) {
    if (fileName.isEmpty())
        return;
    const QString ending = core::GetFileExt(fileName);
    if (!isSame(ending, u"blg") && !isSame(ending, u"ini"))
        findings.add(Kind::Hint, {}, fileName,
                     u"テンプレートとして取りこまれるのは、名前の終わりが「.blg」のファイルだけです。"_s);
    if (!BlogUserData::canBear(core::GetBaseName(fileName)))
        findings.add(Kind::Error, {}, fileName,
                     u"この名前では、ログインのIDやパスワードを覚えられません。"
                     u"「]」と、前後の空白のない名前にしてください。"_s);
}

} // namespace

std::vector<TemplateFinding> checkTemplate(const QByteArray& bytes, const TemplateSurroundings& surroundings) {
    TemplateFindings findings(bytes);
    checkFileName(findings, surroundings.fileName);
    if (checkText(findings, bytes)) {
        Lines lines(findings, bytes);
        if (lines.hasKeys()) {
            lines.check();
            checkRules(findings, surroundings.programFolder);
        } else {
            findings.add(Kind::Error, {}, {}, u"テンプレートのキーがひとつもありません。"_s);
        }
    }
    return std::move(findings).all();
}

bool hasError(const std::vector<TemplateFinding>& findings) {
    return std::ranges::any_of(findings, [](const TemplateFinding& finding) { return finding.kind == Kind::Error; });
}

} // namespace velloria::blog
