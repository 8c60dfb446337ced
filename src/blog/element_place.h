// Where an element of a page is.
#pragma once

#include <QString>

namespace velloria::blog {

/// An element of the page. Places count from 0 in the order of the document. A name stands for the elements whose name
/// or id it is, without regard to case; of several the first one that what is done fits: a check box or radio button to
/// be checked, a button to be clicked, a select whose options are meant, what has a value to be set; else the first.
struct ElementPlace {
    enum class By {
        NameInForm,     ///< `name` among the controls of form `form`; image buttons are none
        InputIndex,     ///< place `index` among the INPUT tags of the page
        TextAreaIndex,  ///< the same of TEXTAREA tags
        InputName,      ///< `name` among the INPUT tags of the page
        NameInDocument, ///< `name` anywhere in the page
    };
    By by = By::NameInForm;
    QString name = {};
    int form = 0;
    int index = 0;
};

/// As a protocol or a refusal tells it: "フォーム 1 の「title」".
QString shownPlace(const ElementPlace& place);

} // namespace velloria::blog
