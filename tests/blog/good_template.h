// A template with which nothing is wrong, and words to change it and to ask the check.
#pragma once

#include "blog/template_check.h"
#include "platform/code_page.h"
#include "support/test_home.h"

namespace velloria::tests {

using namespace Qt::StringLiterals;

using blog::TemplateFinding;
using Kind = TemplateFinding::Kind;
using Keys = QList<std::pair<QString, QString>>;

/// Nothing is wrong with it.
inline const Keys kGood{{u"PostURL"_s, u"https://blog.example.com/post"_s},
                        {u"LoginURL"_s, u"https://blog.example.com/login"_s},
                        {u"NextURL"_s, u"Nothing"_s},
                        {u"ManageURL"_s, u"Required"_s},
                        {u"HTML2TXT"_s, u"HTML2TXT"_s},
                        {u"FORM_LOGIN"_s, u"0"_s},
                        {u"FORM_POST"_s, u"1"_s},
                        {u"FORM_CONFIRM"_s, u"0"_s},
                        {u"CheckObject"_s, u"title"_s},
                        {u"AutoLoginURL"_s, u"TRUE"_s},
                        {u"LoginRedirect"_s, u"FALSE"_s},
                        {u"Events"_s, u"FALSE"_s},
                        {u"VALUE_LoginID"_s, u"id"_s},
                        {u"VALUE_Password"_s, u"pass"_s},
                        {u"VALUE_Login"_s, u"in"_s},
                        {u"VALUE_Title"_s, u"title"_s},
                        {u"VALUE_Body"_s, u"body"_s},
                        {u"VALUE_Genre"_s, u"genre"_s},
                        {u"Type_UnderWrite"_s, u"NAMECHECKBOX"_s},
                        {u"VALUE_UnderWrite_Yes"_s, u"draft"_s},
                        {u"VALUE_UnderWrite_No"_s, u"0"_s},
                        {u"VALUE_Post"_s, u"post"_s},
                        {u"VALUE_Confirm"_s, u"ok"_s}};

inline const QString kNone; // takes a key away

class TemplateCheck : public FactoryHome {
protected:
    TemplateCheck() {
        surroundings.fileName = u"blog.blg"_s;
        surroundings.programFolder = home.path() + u'/';
    }

    std::vector<TemplateFinding> of(const QByteArray& bytes) const { return blog::checkTemplate(bytes, surroundings); }

    /// Of the good template with these keys in place of its own; a null value takes the key away.
    std::vector<TemplateFinding> with(const Keys& changes) const { return of(textWith(changes)); }

    static QByteArray textWith(const Keys& changes) {
        Keys keys = kGood;
        for (const auto& [key, value] : changes) {
            keys.removeIf([&](const auto& row) { return row.first == key; });
            if (!value.isNull())
                keys += {key, value};
        }
        QString text = u"[General]\r\nBlog=テストのブログ\r\n[Simple]\r\n"_s;
        for (const auto& [key, value] : keys)
            text += key + u'=' + value + u"\r\n"_s;
        return platform::toCodePage(text);
    }

    /// Each as "error key=value text" or "hint ...".
    static QStringList told(const std::vector<TemplateFinding>& findings) {
        QStringList lines;
        for (const TemplateFinding& finding : findings)
            lines += (finding.kind == Kind::Error ? u"error "_s : u"hint "_s) + finding.key + u'=' + finding.value +
                     u' ' + finding.text;
        return lines;
    }

    struct Case {
        Keys changes;
        const char* told; ///< the beginning of the one finding: "error KEY=VALUE", and a part of its text behind "|"
    };

    void expectOne(const Case& c) const {
        const QStringList found = told(with(c.changes));
        const QString wanted = QString::fromUtf8(c.told);
        ASSERT_EQ(found.size(), 1) << c.told << " but: " << found.join(u"\n"_s).toStdString();
        EXPECT_TRUE(found[0].startsWith(wanted.section(u'|', 0, 0) + u' '))
            << c.told << " but: " << found[0].toStdString();
        EXPECT_TRUE(found[0].contains(wanted.section(u'|', 1))) << c.told << " but: " << found[0].toStdString();
        EXPECT_EQ(blog::hasError(with(c.changes)), wanted.startsWith(u"error"_s)) << c.told;
    }

    blog::TemplateSurroundings surroundings;
};

} // namespace velloria::tests
