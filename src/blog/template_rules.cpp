#include "blog/template_findings.h"
#include "blog/template_words.h"
#include "blog/web_address.h"
#include "core/blog_keys.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

namespace keys = core::keys::blog_template;
using core::Setting;
using Kind = TemplateFinding::Kind;

const QString kStops = u"投稿のたびに、ここでエラーになります。"_s;

/// An element of a page: the words that its type understands, and what any other one means.
struct ElementRule {
    Setting value;
    Setting type;
    QList<QStringView> words;
    bool isIndexOtherwise = true; ///< else nothing is done
    QString otherwise = u"INPUTタグの番号として扱われます。"_s;
};

const ElementRule& loginId() {
    static const ElementRule rule{keys::kValueLoginID, keys::kTypeLoginID, {words::kName}};
    return rule;
}

const ElementRule& password() {
    static const ElementRule rule{keys::kValuePassword, keys::kTypePassword, {words::kName}};
    return rule;
}

const ElementRule& login() {
    static const ElementRule rule{keys::kValueLogin,
                                  keys::kTypeLogin,
                                  {words::kName, words::kSubmit, words::kInput},
                                  false,
                                  u"ログインのボタンは押されません。"_s};
    return rule;
}

const ElementRule& next() {
    static const ElementRule rule{keys::kValueNext, keys::kTypeNext, {words::kName}};
    return rule;
}

const ElementRule& title() {
    static const ElementRule rule{keys::kValueTitle, keys::kTypeTitle, {words::kName, words::kTextArea}};
    return rule;
}

const ElementRule& body() {
    static const ElementRule rule{keys::kValueBody, keys::kTypeBody, {words::kName, words::kTextArea}};
    return rule;
}

const ElementRule& post() {
    static const ElementRule rule{keys::kValuePost, keys::kTypePost, {words::kName, words::kSubmit}};
    return rule;
}

const ElementRule& confirmation() {
    static const ElementRule rule{keys::kValueConfirm, keys::kTypeConfirm, {words::kName, words::kSubmit}};
    return rule;
}

bool isOff(const QString& address) {
    return address.isEmpty() || address == words::kNothing;
}

class Rules {
public:
    Rules(TemplateFindings& findings, const QString& programFolder)
        : m_findings(findings)
        , m_programFolder(programFolder)
        , m_blog(findings.value(keys::kBlog)) {}

    void check() {
        checkName();
        checkPostUrl();
        checkLoginUrl();
        checkNextUrl();
        checkManageUrl();
        checkConversion();
        for (const Setting& form : {keys::kFormLogin, keys::kFormPost, keys::kFormConfirm})
            checkForm(form);
        checkSteps();
        checkLogin();
        checkEntry();
        checkGenre();
        checkSwitches(m_findings);
        checkSending();
    }

private:
    void checkName() {
        if (!m_findings.isThere(keys::kBlog))
            m_findings.hint(keys::kBlog, u"ブログの名前がないので、画面には「%1」と出ます。"_s.arg(m_blog));
        else if (m_blog.isEmpty())
            m_findings.hint(keys::kBlog, u"ブログの名前が空です。質問やステータスバーに名前が出ません。"_s);
        else if (m_blog == words::kAmebaBlog)
            m_findings.hint(keys::kBlog, u"この名前では、記入の前にページの26番目のリンクが押されます。"_s);
        else if (m_blog == words::kYahooBlog)
            m_findings.hint(keys::kBlog, u"この名前では、送信は行き先が「submitAll()」のリンクだけで行われます。"_s);
    }

    void checkPostUrl() {
        const QString address = m_findings.value(keys::kPostURL);
        if (address.isEmpty())
            m_findings.error(keys::kPostURL, u"投稿画面のURLがないので、投稿のたびに尋ね、いつまでも投稿できません。"
                                             u"使う人ごとにちがうときは「Required」と書きます。"_s);
        else if (address == words::kNothing)
            m_findings.error(keys::kPostURL, u"「Nothing」はここでは使えません。アドレスとして扱われます。"_s);
        else if (!isUserAddress(keys::kPostURL))
            checkAddress(keys::kPostURL);
    }

    void checkLoginUrl() {
        const QString address = m_findings.value(keys::kLoginURL);
        const bool isNavigatedTo = m_autoLogin == words::kFalse || m_autoLogin == words::kFalseRenavigate;
        if (address == words::kRequired) {
            m_findings.error(keys::kLoginURL, u"「Required」はここでは使えません。アドレスとして扱われます。"_s);
        } else if (isOff(address)) {
            if (isNavigatedTo)
                m_findings.error(keys::kLoginURL,
                                 u"AutoLoginURL が %1 なのに、ログインのページのURLがありません。"_s.arg(m_autoLogin));
            else if (m_findings.isEmpty(keys::kCheckObject))
                m_findings.hint(keys::kCheckObject,
                                u"LoginURL も CheckObject もないので、ログインしているかどうかはフォームの数だけで"
                                u"判断されます。"_s);
        } else if (!m_findings.isMisspelt(keys::kLoginURL, {words::kNothing, words::kRequired}) &&
                   checkAddress(keys::kLoginURL)) {
            if (address == m_findings.value(keys::kPostURL))
                m_findings.hint(keys::kLoginURL,
                                u"PostURL と同じなので、投稿画面がそのアドレスのままなら、いつもログインが"
                                u"要ることになり、投稿できません。"_s);
            QUrl shown = webAddress(address);
            if (shown.path().isEmpty())
                shown.setPath(u"/"_s);
            const QString text = shown.toString(QUrl::FullyEncoded);
            if (text != address)
                m_findings.hint(keys::kLoginURL,
                                u"ログインのページかどうかは、アドレスの全体を一字ずつくらべます。ブラウザに出るのは"
                                u"「%1」です。"_s.arg(text));
        }
    }

    void checkNextUrl() {
        const QString address = m_findings.value(keys::kNextURL);
        const bool isWritten = !isOff(m_findings.value(keys::kValueNext));
        if (address.isEmpty())
            m_findings.error(keys::kNextURL,
                             u"値がないので、投稿のたびにURLを尋ねます。使わないときは「Nothing」と書きます。"_s);
        else if (m_findings.isMisspelt(keys::kNextURL, {words::kNothing, words::kRequired}))
            return;
        else if (address == words::kNothing && isWritten)
            m_findings.error(keys::kValueNext,
                             u"NextURL が「Nothing」なので、「Nothing」という文字が書きこまれます。"_s);
        else if (address != words::kNothing && !isWritten)
            m_findings.hint(keys::kNextURL, u"VALUE_Next がないので、どこにも書きこまれません。"_s);
    }

    void checkManageUrl() {
        const QString address = m_findings.value(keys::kManageURL);
        if (address.isEmpty())
            m_findings.hint(keys::kManageURL, u"管理画面のURLがないので、「管理」では何も開きません。"_s);
        else if (address == words::kNothing)
            m_findings.hint(keys::kManageURL, u"「Nothing」はここではアドレスとして扱われます。"_s);
        else if (!isUserAddress(keys::kManageURL))
            checkAddress(keys::kManageURL);
    }

    /// Whether it is for the user to tell, or meant to be.
    bool isUserAddress(const Setting& row) {
        return m_findings.value(row) == words::kRequired ||
               m_findings.isMisspelt(row, {words::kRequired, words::kNothing});
    }

    bool checkAddress(const Setting& row) {
        try {
            if (!webAddress(m_findings.value(row)).userInfo().isEmpty())
                m_findings.hint(
                    row, u"アドレスに使う人のIDやパスワードが入っています。テンプレートには書かないでください。"_s);
            return true;
        } catch (const platform::Failure& failure) {
            m_findings.error(row, failure.reason());
            return false;
        }
    }

    void checkConversion() {
        const QString name = m_findings.value(keys::kHTML2TXT);
        const QString otherwise = u"投稿のたびに知らせが出て、本文は変換されずに送られます。"_s;
        if (name.isEmpty())
            m_findings.hint(keys::kHTML2TXT, u"変換の設定の名前がありません。"_s + otherwise);
        else if (!core::isBareName(name))
            m_findings.error(keys::kHTML2TXT, u"フォルダは書けません。プログラムのフォルダにあるファイルの名前だけを"
                                              u"書きます。"_s);
        else if (name.endsWith(u".ini"_s, Qt::CaseInsensitive))
            m_findings.error(keys::kHTML2TXT, u"名前だけを、「.ini」を付けずに書きます。"_s);
        else if (!platform::fileExists(m_programFolder + name + u".ini"_s))
            m_findings.hint(keys::kHTML2TXT, u"プログラムのフォルダに「%1.ini」がありません。"_s.arg(name) + otherwise);
    }

    void checkForm(const Setting& row) {
        if (!m_findings.isThere(row))
            return;
        const QString text = m_findings.value(row);
        const qint32 number = m_findings.number(row).value_or(0);
        if (text.isEmpty())
            m_findings.hint(row, u"値が空です。0番のフォームとして扱われます。"_s);
        else if (number < 0)
            m_findings.error(row, u"フォームは0から数えます。マイナスの番号のフォームはありません。"_s);
        else if (number > std::numeric_limits<qint16>::max())
            m_findings.error(row, u"番号が大きすぎます (32767まで)。投稿は始まりません。"_s);
        else if (bool isNumber = false; text.toInt(&isNumber) != number || !isNumber)
            m_findings.error(row, u"フォームの番号ではありません。%1番のフォームとして扱われます。"_s.arg(number));
    }

    void checkSteps() {
        m_findings.isWord(keys::kAutoLoginURL, {words::kTrue, words::kFalse, words::kFalseRenavigate},
                          u"「TRUE」として扱われます。"_s);
        m_findings.isWord(keys::kLoginRedirect, {words::kTrue, words::kFalse, words::kRenavigate},
                          u"「FALSE」として扱われます。"_s);
        m_findings.isWord(keys::kEvents, {words::kTrue, words::kFalse}, u"「FALSE」として扱われます。"_s);
    }

    /// The word of the type, as far as it is understood; any other means a place among the INPUT tags, or nothing.
    QStringView typeOf(const ElementRule& rule, Kind kindOfUnknown) {
        const QString text = m_findings.value(rule.type);
        // What people write for "any other word".
        if (rule.isIndexOtherwise && (text.compare(words::kInput, Qt::CaseInsensitive) == 0 ||
                                      text.compare(u"INDEX"_s, Qt::CaseInsensitive) == 0))
            return words::kInput;
        if (m_findings.isWord(rule.type, rule.words, rule.otherwise, kindOfUnknown))
            return *std::ranges::find(rule.words, text);
        return rule.isIndexOtherwise ? words::kInput : QStringView();
    }

    /// `why` says what follows when the element is not named.
    void checkElement(const ElementRule& rule, const QString& why = kStops) {
        const QStringView type = typeOf(rule, rule.isIndexOtherwise ? Kind::Hint : Kind::Error);
        if (type == words::kSubmit || type.isEmpty() || !m_findings.wantValue(rule.value, why))
            return;
        const QString value = m_findings.value(rule.value);
        bool isNumber = false;
        value.toInt(&isNumber);
        if (type != words::kName)
            m_findings.wantIndex(rule.value);
        else if (isNumber)
            m_findings.hint(rule.value, u"要素の名前としてさがします。番号のときは %1 に「%2」と書きます。"_s.arg(
                                            rule.type.name, words::kInput));
    }

    void checkLogin() {
        const bool isSubmitted = m_findings.value(keys::kTypeLogin) == words::kSubmit;
        const bool hasNone = m_findings.isEmpty(keys::kValueLoginID) && m_findings.isEmpty(keys::kValuePassword) &&
                             m_findings.isEmpty(keys::kValueLogin) && !isSubmitted;
        if (hasNone && isOff(m_findings.value(keys::kLoginURL)) && m_autoLogin == words::kTrue) {
            m_findings.hint(keys::kValueLoginID,
                            u"ログインのしかたがありません。ログインのページのない (サーバーが自分でIDを尋ねる) "
                            u"サービスなら、このままで使えます。"_s);
        } else {
            const QString why = u"ログインが要るときに、そこで止まります。"_s;
            checkElement(loginId(), why);
            checkElement(password(), why);
            checkElement(login(), why);
        }
        if (!isOff(m_findings.value(keys::kValueNext)) && !m_findings.isMisspelt(keys::kValueNext, {words::kNothing}))
            checkElement(next());
    }

    void checkEntry() {
        checkElement(title());
        checkElement(body());
        if (!m_findings.isEmpty(keys::kValueBody) &&
            m_findings.value(keys::kValueTitle) == m_findings.value(keys::kValueBody) &&
            m_findings.value(keys::kTypeTitle) == m_findings.value(keys::kTypeBody))
            m_findings.error(keys::kValueBody, u"VALUE_Title と同じ要素なので、タイトルが本文で消えます。"_s);
    }

    void checkGenre() {
        if (m_findings.isEmpty(keys::kValueGenre)) {
            for (const Setting& row : {keys::kTypeGenre, keys::kValueGenre2}) {
                if (m_findings.isThere(row) && !m_findings.isEmpty(row))
                    m_findings.hint(row, u"VALUE_Genre がないので、使われません。"_s);
            }
            return;
        }
        m_findings.isWord(keys::kTypeGenre, {words::kSelect, words::kName}, u"カテゴリは選ばれません。"_s);
        if (m_findings.value(keys::kTypeGenre) == words::kName)
            m_findings.wantValue(keys::kValueGenre2, u"Type_Genre が「NAME」のときに要ります。"_s + kStops);
        else if (!m_findings.isEmpty(keys::kValueGenre2))
            m_findings.hint(keys::kValueGenre2, u"Type_Genre が「NAME」のときにだけ使われます。"_s);
    }

    void checkSending() {
        if (m_blog != words::kYahooBlog)
            checkElement(post());
        if (!m_findings.isEmpty(keys::kValueConfirm))
            checkElement(confirmation());
        else if (m_findings.value(keys::kTypeConfirm) == words::kSubmit)
            m_findings.error(keys::kTypeConfirm, u"VALUE_Confirm が空なので、確認画面は送信されません。"
                                                 u"何か書いてください。"_s);
        else if (m_findings.isThere(keys::kTypeConfirm))
            m_findings.hint(keys::kTypeConfirm, u"VALUE_Confirm がないので、使われません。"_s);
    }

    TemplateFindings& m_findings;
    const QString m_programFolder;
    const QString m_blog;
    const QString m_autoLogin = m_findings.value(keys::kAutoLoginURL);
};

} // namespace

void checkRules(TemplateFindings& findings, const QString& programFolder) {
    Rules(findings, programFolder).check();
}

} // namespace velloria::blog
