#include "blog/blog_switches.h"

#include "blog/template_words.h"
#include "core/blog_keys.h"
#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace rows = core::keys::blog_template;
using By = ElementPlace::By;

} // namespace

/// What a switch is to be, and what the template says of it, with the keys that say so.
struct BlogSwitches::Setting {
    const rows::SwitchRows& keys;
    const TemplateSwitch& words;
    bool isOn;

    /// The text of the state that is wanted, and that of the other one.
    const QString& wanted() const { return isOn ? words.radioYes : words.radioNo; }
    const QString& other() const { return isOn ? words.radioNo : words.radioYes; }
};

BlogSwitches::BlogSwitches(const BlogTemplate& blogTemplate, PageDriver& driver)
    : m_template(blogTemplate)
    , m_driver(driver) {}

void BlogSwitches::setUnderWrite(bool isPublic) {
    const Setting setting{rows::kUnderWrite, m_template.underWrite, isPublic};
    if (setting.words.type == words::kInputCheckBox)
        setRadioPair(setting);
    else
        setTexts(setting);
}

void BlogSwitches::setAcceptComment(bool isAllowed) {
    setTexts({rows::kAcceptComment, m_template.acceptComment, isAllowed});
}

void BlogSwitches::setAcceptPing(bool isAllowed) {
    const Setting setting{rows::kAcceptPing, m_template.acceptPing, isAllowed};
    const QString& type = setting.words.type;
    if (type == words::kNameSelect) // numbers, unlike the other switches
        writePairInForm(setting, isAllowed ? u"1"_s : u"0"_s, isAllowed ? u"0"_s : u"1"_s);
    else if (type != words::kSelect)
        setTexts(setting);
}

/// The words that all switches understand in the same way.
void BlogSwitches::setTexts(const Setting& setting) {
    const QString& type = setting.words.type;
    if (type == words::kNameCheckBox)
        setCheckBox(setting);
    else if (type == words::kNameSelect)
        writePairInForm(setting, setting.wanted(), setting.other());
    else if (type == words::kInputSelect)
        writePairOfInputs(setting);
    else if (type == words::kSelect)
        chooseState(setting);
}

void BlogSwitches::setCheckBox(const Setting& setting) {
    const bool isSameSense = setting.words.no == words::kSameSense;
    m_driver.setChecked(byName(setting.keys.yes.name, setting.words.yes, m_template.formPost),
                        setting.isOn == isSameSense);
}

void BlogSwitches::setRadioPair(const Setting& setting) {
    const bool isYes = setting.isOn == (setting.words.radioNo == words::kSameSense);
    m_driver.setChecked(byIndex(By::InputIndex, setting.keys.yes.name, setting.words.yes), isYes);
    m_driver.setChecked(byIndex(By::InputIndex, setting.keys.no.name, setting.words.no), !isYes);
}

void BlogSwitches::writePairInForm(const Setting& setting, const QString& yes, const QString& no) {
    m_driver.setValue(byName(setting.keys.yes.name, setting.words.yes, m_template.formPost), yes);
    m_driver.setValue(byName(setting.keys.no.name, setting.words.no, m_template.formPost), no);
}

void BlogSwitches::writePairOfInputs(const Setting& setting) {
    m_driver.setValue(byIndex(By::InputIndex, setting.keys.yes.name, setting.words.yes), setting.wanted());
    m_driver.setValue(byIndex(By::InputIndex, setting.keys.no.name, setting.words.no), setting.other());
}

void BlogSwitches::chooseState(const Setting& setting) {
    if (setting.words.yes.isEmpty())
        throw platform::Failure(u"投稿画面の選択肢を選べません。"_s, {},
                                u"%1 に要素の名前がありません。"_s.arg(setting.keys.yes.name),
                                u"テンプレートを直してください。"_s);
    m_driver.choose({setting.keys.yes.name, {.by = By::NameInDocument, .name = setting.words.yes}}, setting.wanted());
}

} // namespace velloria::blog
