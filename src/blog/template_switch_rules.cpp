#include "blog/template_findings.h"
#include "blog/template_words.h"
#include "core/blog_keys.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace keys = core::keys::blog_template;
using core::Setting;
using keys::SwitchRows;

/// What a kind of switch takes a key for.
enum class Use {
    Unread,
    Name,  ///< of an element
    Index, ///< place of an element
    Sense, ///< whether a box means the setting itself or its opposite
    Text,  ///< what is set or chosen
};

/// One row of the table of switches.
struct SwitchRule {
    QStringView word;
    QList<QStringView> types; ///< the keys that understand the word
    Use yes;
    Use no;
    Use radioYes;
    Use radioNo;
};

const QStringView kDraft = keys::kUnderWrite.type.name;
const QStringView kComments = keys::kAcceptComment.type.name;
const QStringView kPings = keys::kAcceptPing.type.name;

/// A word that some switches take in two ways has a row for each.
const std::vector<SwitchRule>& switchRules() {
    static const std::vector<SwitchRule> rules{
        {words::kNameCheckBox, {kDraft, kComments, kPings}, Use::Name, Use::Sense, Use::Unread, Use::Unread},
        {words::kInputCheckBox, {kDraft}, Use::Index, Use::Index, Use::Unread, Use::Sense},
        {words::kNameSelect, {kDraft, kComments}, Use::Name, Use::Name, Use::Text, Use::Text},
        {words::kNameSelect, {kPings}, Use::Name, Use::Name, Use::Unread, Use::Unread},
        {words::kInputSelect, {kDraft, kComments, kPings}, Use::Index, Use::Index, Use::Text, Use::Text},
        {words::kSelect, {kDraft, kComments}, Use::Name, Use::Unread, Use::Text, Use::Text},
        {words::kDraftClickName, {kDraft}, Use::Name, Use::Unread, Use::Unread, Use::Unread},
        {words::kDraftClickInput, {kDraft}, Use::Index, Use::Unread, Use::Unread, Use::Unread},
    };
    return rules;
}

std::array<Setting, 4> valuesOf(const SwitchRows& rows) {
    return {rows.yes, rows.no, rows.radioYes, rows.radioNo};
}

void checkUse(TemplateFindings& findings, const Setting& row, Use use, const SwitchRows& rows) {
    const QString type = findings.value(rows.type);
    const QString why =
        u"%1 が「%2」のときに要ります。投稿のたびに、ここでエラーになります。"_s.arg(rows.type.name, type);
    switch (use) {
    case Use::Unread:
        if (!findings.isEmpty(row))
            findings.hint(row, u"%1 が「%2」のときは読まれません。"_s.arg(rows.type.name, type));
        break;
    case Use::Name:
        findings.wantValue(row, why);
        break;
    case Use::Index:
        if (findings.wantValue(row, why))
            findings.wantIndex(row);
        break;
    case Use::Sense:
        if (const QString sense = findings.value(row); sense != words::kSameSense && sense != u"0")
            findings.hint(row, u"「1」でないので、チェックは反対の意味 (付けると、しない) として扱われます。"
                               u"そのつもりなら「0」と書きます。"_s);
        break;
    case Use::Text:
        break; // told for both at once
    }
}

/// Of the two states.
void checkTexts(TemplateFindings& findings, const SwitchRows& rows) {
    if (findings.value(rows.radioYes) == findings.value(rows.radioNo)) {
        findings.hint(rows.radioYes, u"%1 と同じなので、する、しないの区別がつきません。"_s.arg(rows.radioNo.name));
        return;
    }
    if (findings.value(rows.type) != words::kSelect) // a field may well be emptied
        return;
    if (findings.isEmpty(rows.yes)) // the list is told to be missing
        return;
    for (const Setting& row : {rows.radioYes, rows.radioNo}) {
        if (findings.isEmpty(row))
            findings.hint(row, u"選ぶものがないので、%1ときは、ページのままになります。"_s.arg(
                                   row.name == rows.radioYes.name ? u"する"_s : u"しない"_s));
    }
}

void checkSwitch(TemplateFindings& findings, const SwitchRows& rows) {
    const QString type = findings.value(rows.type);
    const auto isOfThis = [&](const SwitchRule& rule) { return rule.types.contains(rows.type.name); };
    const auto rule = std::ranges::find_if(
        switchRules(), [&](const SwitchRule& candidate) { return candidate.word == type && isOfThis(candidate); });
    if (rule != switchRules().end()) {
        checkUse(findings, rows.yes, rule->yes, rows);
        checkUse(findings, rows.no, rule->no, rows);
        checkUse(findings, rows.radioYes, rule->radioYes, rows);
        checkUse(findings, rows.radioNo, rule->radioNo, rows);
        if (rule->radioYes == Use::Text)
            checkTexts(findings, rows);
        return;
    }
    const QString otherwise = u"この設定は、ページのままになります。"_s;
    if (type.isEmpty() || type == words::kName) {
        const auto values = valuesOf(rows);
        if (std::ranges::any_of(values, [&](const Setting& row) { return !findings.isEmpty(row); }))
            findings.hint(rows.type,
                          u"しかたが書かれていないので、%1 などは読まれません。"_s.arg(rows.yes.name) + otherwise);
        return;
    }
    if (std::ranges::any_of(switchRules(), [&](const SwitchRule& other) { return other.word == type; })) {
        findings.error(rows.type, u"この言葉は %1 では使えません。"_s.arg(rows.type.name) + otherwise);
        return;
    }
    QList<QStringView> known{words::kName};
    for (const SwitchRule& candidate : switchRules()) {
        if (isOfThis(candidate))
            known += candidate.word;
    }
    findings.isWord(rows.type, known, otherwise);
}

} // namespace

void checkSwitches(TemplateFindings& findings) {
    for (const SwitchRows& rows : keys::kSwitches)
        checkSwitch(findings, rows);
}

} // namespace velloria::blog
