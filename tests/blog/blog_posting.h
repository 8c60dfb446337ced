// A blog service, a template for it and an entry: what a test of posting begins with, and changes.
#pragma once

#include "blog/blog_entry.h"
#include "blog/scripted_page.h"
#include "support/test_home.h"

#include <QMap>

namespace velloria::tests {

/// Fixture. The service leads who is not logged in to its login page. Its posting page has the form to post as the
/// second one; the first one has the same names.
class BlogPosting : public TestHome {
protected:
    BlogPosting();

    /// As a run does it, by the template as it is now.
    void post();
    void writeTemplate() const;
    QString templatePath() const;

    ScriptedElement& field(const QString& name) { return page.element(postUrl, 1, name); }
    ScriptedForm& postForm() { return page.documents[postUrl].forms[1]; }
    /// A further element of the posting form.
    void addField(const ScriptedElement& element) { postForm().elements += element; }
    /// The place of the element among the INPUT tags of the posting page, as a template has it.
    QString inputIndex(const QString& name);

    void setUser(const core::Setting& row, const QString& value) const;
    QString user(const core::Setting& row) const;

    /// The lines of the first status panel in turn.
    QStringList statuses() const { return desk.texts(QStringLiteral("status")); }
    /// The protocol of the last run as its file has it, as one text.
    QString protocol() const;
    /// The boxes that were shown and the lines that were asked for, in turn.
    QStringList asked() const;
    /// The run came to its end without a word of a failure.
    void expectPosted() const;
    /// The run ended in this stage, with its status, box and details.
    void expectStage(const QString& stage) const;

    const QString blogName = QStringLiteral("test");
    const QString postUrl = QStringLiteral("http://blog.test/post");
    const QString loginUrl = QStringLiteral("http://blog.test/login");
    const QString doneUrl = QStringLiteral("http://blog.test/done");
    /// Its keys: those of section "Simple" by their name, and "Blog".
    QMap<QString, QString> keys;
    ScriptedPage page;
    blog::BlogEntry entry;
};

} // namespace velloria::tests
