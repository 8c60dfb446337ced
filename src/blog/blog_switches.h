// The switches of the posting form: open to the public or a draft, comments and trackbacks allowed.
#pragma once

#include "blog/page_driver.h"

namespace velloria::blog {

/// Each sets one switch as the template's word for it says; a word that the switch does not understand leaves it as it
/// is. Throws what the page throws, and platform::Failure for a select without a name.
class BlogSwitches {
public:
    /// Both outlive this.
    BlogSwitches(const BlogTemplate& blogTemplate, PageDriver& driver);

    void setUnderWrite(bool isPublic);
    void setAcceptComment(bool isAllowed);
    void setAcceptPing(bool isAllowed);

private:
    struct Setting;

    void setCheckBox(const Setting& setting);
    void setRadioPair(const Setting& setting);
    void setTexts(const Setting& setting);
    void writePairInForm(const Setting& setting, const QString& yes, const QString& no);
    void writePairOfInputs(const Setting& setting);
    void chooseState(const Setting& setting);

    const BlogTemplate& m_template;
    PageDriver& m_driver;
};

} // namespace velloria::blog
