#include "blog/blog_login.h"

#include "blog/template_words.h"
#include "core/blog_keys.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace rows = core::keys::blog_template;
namespace user = core::keys::blog_user;

/// Whether the template names something at all.
bool isUsed(const QString& value) {
    return !value.isEmpty() && value != words::kNothing;
}

} // namespace

BlogLogin::BlogLogin(const BlogTemplate& blogTemplate, const BlogUserData& data, platform::Desk& desk,
                     PageDriver& driver)
    : m_template(blogTemplate)
    , m_data(data)
    , m_desk(desk)
    , m_driver(driver) {}

bool BlogLogin::isNeeded() {
    const QString address = m_driver.page().locationUrl();
    const int formCount = m_driver.page().formCount();
    const QString why = reason(formCount, address);
    m_driver.note(u"フォームの数: %1。%2"_s.arg(QString::number(formCount),
                                                why.isEmpty() ? u"投稿画面です。"_s : why + u"ログインが必要です。"_s));
    return !why.isEmpty();
}

/// Why the page is not the posting page, "" when it seems to be that. The address counts as a whole.
QString BlogLogin::reason(int formCount, const QString& address) {
    if (isUsed(m_template.loginUrl) && address == m_template.loginUrl)
        return u"LoginURL のページです。"_s;
    if (formCount == 0)
        return u"フォームがありません。"_s;
    if (formCount == 1 && m_template.formPost >= 1)
        return u"フォームがひとつだけです。"_s;
    if (formCount <= m_template.formPost)
        return u"フォームが FORM_POST (%1) までありません。"_s.arg(m_template.formPost);
    const Target check = byName(rows::kCheckObject.name, m_template.checkObject, m_template.formPost);
    if (!m_template.checkObject.isEmpty() && !m_driver.page().hasElement(check.place))
        return u"CheckObject (%1) がありません。"_s.arg(m_template.checkObject);
    return {};
}

bool BlogLogin::logIn(const QString& postUrl, const QString& nextUrl) {
    if (m_template.autoLoginUrl == words::kFalse || m_template.autoLoginUrl == words::kFalseRenavigate) {
        m_driver.navigate(m_template.loginUrl);
        if (!m_driver.WaitPageComplete())
            return false;
    }
    fill(nextUrl);
    send();
    const bool isRenavigated = m_template.loginRedirect == words::kRenavigate;
    if ((isRenavigated || m_template.loginRedirect == words::kTrue) && !m_driver.WaitPageComplete())
        return false;
    if (isRenavigated)
        m_driver.navigate(postUrl);
    return m_driver.WaitPageComplete();
}

void BlogLogin::fill(const QString& nextUrl) {
    // Both questions first: what the user types is stored before the page is touched.
    const QString loginId = stored(user::kLoginID, m_template.blog + u"ユーザー名を入れてください"_s);
    const QString password = stored(user::kPassword, m_template.blog + u"パスワードを入れてください"_s);
    const int form = m_template.formLogin;
    m_driver.setValue(byNameOrInput(rows::kValueLoginID.name, m_template.loginId, form), loginId);
    m_driver.setValue(byNameOrInput(rows::kValuePassword.name, m_template.password, form), password);
    if (isUsed(m_template.next.value))
        m_driver.setValue(byNameOrInput(rows::kValueNext.name, m_template.next, form), nextUrl);
}

/// The value that the user's data hold, else what the user answers, which counts at once.
QString BlogLogin::stored(const core::Setting& row, const QString& question) {
    const QString value = m_data.value(row);
    if (!value.isEmpty())
        return value;
    const QString answer = m_desk.input(question, {});
    if (answer.isEmpty())
        return answer;
    m_data.store(row, answer);
    return m_data.value(row);
}

void BlogLogin::send() {
    const QString& type = m_template.login.type;
    if (type == words::kSubmit)
        m_driver.submit(m_template.formLogin);
    else if (type == words::kName || type == words::kInput)
        m_driver.click(byNameOrInput(rows::kValueLogin.name, m_template.login, m_template.formLogin));
    else
        m_driver.note(u"Type_Login はログインの方法を示していません。"_s);
}

} // namespace velloria::blog
