// Blog templates: what a run must know of the pages of one blog service.
#pragma once

#include "core/session.h"

#include <QString>
#include <QStringList>

namespace velloria::blog {

/// The names of the working templates, in the order of the folder's listing. A name is the blog's key everywhere.
QStringList blogNames(const core::Session& session);

/// The file of the working template of that name.
QString templateFile(const core::Session& session, const QString& name);

/// Where an element is: its name or place, and the word that says how that is meant.
struct TemplateElement {
    QString value;
    QString type;
};

/// A switch of the posting form: open to the public, comments, trackbacks.
struct TemplateSwitch {
    QString type;
    QString yes;
    QString no;
    QString radioYes;
    QString radioNo;
};

/// All of a template as it stands in its file; words are compared to the letter.
struct BlogTemplate {
    QString blog; ///< the name that people see

    QString postUrl;
    QString loginUrl;
    QString nextUrl;
    QString manageUrl;
    QString html2txt;

    qint16 formLogin = 0;
    qint16 formPost = 0;
    qint16 formConfirm = 0;
    QString checkObject;
    QString autoLoginUrl;
    QString loginRedirect;
    bool raisesEvents = false; ///< of a person who types

    TemplateElement loginId;
    TemplateElement password;
    TemplateElement next;
    TemplateElement login;
    TemplateElement title;
    TemplateElement body;
    TemplateElement genre;
    QString genre2;
    TemplateElement post;
    TemplateElement confirm;
    TemplateSwitch underWrite;
    TemplateSwitch acceptComment;
    TemplateSwitch acceptPing;

    /// Of a file that is missing every value is what it is without its key. Throws platform::Failure when it can't be
    /// read, is larger than any template, or holds a form number beyond 16 bits.
    static BlogTemplate read(const QString& file);
};

/// More than any template has.
inline constexpr qint64 kMostTemplateBytes = 1'000'000;

/// Throws platform::Failure for a file that is larger than any template: it comes from strangers.
void refuseHugeTemplate(const QString& file);

} // namespace velloria::blog
