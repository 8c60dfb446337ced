#include "blog/blog_form.h"

#include "blog/template_words.h"
#include "core/blog_keys.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace rows = core::keys::blog_template;
using By = ElementPlace::By;

/// Of the page of one service, whose posting form comes up behind a link.
constexpr int kAmebaLink = 25;
/// What stands in the place of a host in the address of the link that posts at another.
const QString kYahooHost = u"submitAll()"_s;

} // namespace

BlogForm::BlogForm(const BlogTemplate& blogTemplate, PageDriver& driver)
    : m_template(blogTemplate)
    , m_driver(driver) {}

void BlogForm::open() {
    if (!m_template.genre.value.isEmpty()) {
        const bool isThere = m_driver.page().hasElement({.by = By::NameInDocument, .name = m_template.genre.value});
        m_driver.note(rows::kValueGenre.name.toString() +
                      (isThere ? u" の要素があります。"_s : u" の要素がありません。"_s));
    }
    if (m_template.blog == words::kAmebaBlog)
        m_driver.clickLink(kAmebaLink);
}

void BlogForm::writeTitle(const QString& title) {
    writeText(rows::kValueTitle.name, m_template.title, title);
}

void BlogForm::writeBody(const QString& body) {
    writeText(rows::kValueBody.name, m_template.body, body);
}

void BlogForm::writeText(QStringView key, const TemplateElement& element, const QString& text) {
    m_driver.setValue(element.type == words::kTextArea ? byIndex(By::TextAreaIndex, key, element.value)
                                                       : byNameOrInput(key, element, m_template.formPost),
                      text);
}

void BlogForm::chooseGenre(const QString& genre) {
    const TemplateElement& element = m_template.genre;
    if (element.value.isEmpty() || (element.type != words::kSelect && element.type != words::kName))
        return;
    m_driver.choose({rows::kValueGenre.name, {.by = By::NameInDocument, .name = element.value}}, genre);
    if (element.type == words::kName)
        m_driver.setValue({rows::kValueGenre2.name, {.by = By::InputName, .name = m_template.genre2}}, genre);
}

/// The first rule that applies.
void BlogForm::post(bool isPublic) {
    const TemplateSwitch& draft = m_template.underWrite;
    const QStringView draftKey = rows::kUnderWrite.yes.name;
    if (m_template.blog == words::kYahooBlog)
        clickYahooLink();
    else if (draft.type == words::kDraftClickName && !isPublic)
        m_driver.click(byName(draftKey, draft.yes, m_template.formPost));
    else if (draft.type == words::kDraftClickInput && !isPublic)
        m_driver.click(byIndex(By::InputIndex, draftKey, draft.yes));
    else
        send(rows::kValuePost.name, m_template.post, m_template.formPost);
}

/// Without the link nothing is clicked, and the wait for the next page runs out.
void BlogForm::clickYahooLink() {
    const qsizetype index = m_driver.page().linkHosts().indexOf(kYahooHost);
    if (index < 0)
        m_driver.note(u"投稿するためのリンクがありません。"_s);
    else
        m_driver.clickLink(int(index));
}

void BlogForm::confirm() {
    if (!m_template.confirm.value.isEmpty())
        send(rows::kValueConfirm.name, m_template.confirm, m_template.formConfirm);
}

void BlogForm::send(QStringView key, const TemplateElement& element, int form) {
    if (element.type == words::kSubmit)
        m_driver.submit(form);
    else
        m_driver.click(byNameOrInput(key, element, form));
}

} // namespace velloria::blog
