// What the check of a template collects, and the words by which its rules are told. For template_*.cpp; others include
// blog/template_check.h.
#pragma once

#include "core/setting.h"
#include "platform/profile_file.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace velloria::blog {

struct TemplateFinding {
    enum class Kind {
        Error, ///< a post would stop, ask each time, or do something else than the template says
        Hint,  ///< it may be meant
    };
    Kind kind = Kind::Error;
    QString key; ///< as the program spells it; of a line that is no key of a template, as the line does; "" of the file
    QString value; ///< as the file has it; "" when it is missing
    QString text;  ///< a sentence in Japanese
};

/// The keys of one template as its rules ask for them.
class TemplateFindings {
public:
    explicit TemplateFindings(const QByteArray& bytes);

    void error(const core::Setting& row, const QString& text);
    void hint(const core::Setting& row, const QString& text);
    /// Of something else than a key that is read.
    void add(TemplateFinding::Kind kind, const QString& key, const QString& value, const QString& text);
    std::vector<TemplateFinding> all() && { return std::move(m_all); }

    /// As a run reads it.
    QString value(const core::Setting& row) const;
    bool isThere(const core::Setting& row) const;
    bool isEmpty(const core::Setting& row) const { return value(row).isEmpty(); }
    std::optional<qint32> number(const core::Setting& row) const;

    /// Whether the value is one of `known`. Otherwise tells an error for one of them in another case or spelling, and
    /// for any other word what `otherwise` says becomes of it: an error, or what `kind` is.
    bool isWord(const core::Setting& row, const QList<QStringView>& known, const QString& otherwise,
                TemplateFinding::Kind kind = TemplateFinding::Kind::Error);
    /// Tells an error when the value differs from one of `words` in case alone.
    bool isMisspelt(const core::Setting& row, const QList<QStringView>& words);
    /// Tells what is wrong with a place that is counted.
    void wantIndex(const core::Setting& row);
    /// Tells an error when the value is empty; `why` ends the sentence.
    bool wantValue(const core::Setting& row, const QString& why);

private:
    platform::ProfileFile m_profile;
    std::vector<TemplateFinding> m_all;
};

/// The one of `words` that differs from `text` in no more than two letters, whatever their case; "" for none.
QString nearestWord(const QString& text, const QStringList& words);

/// Tells what is wrong with the keys, whatever their lines look like (template_rules.cpp).
void checkRules(TemplateFindings& findings, const QString& programFolder);
/// The same of the switches alone (template_switch_rules.cpp).
void checkSwitches(TemplateFindings& findings);

} // namespace velloria::blog
