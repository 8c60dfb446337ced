// The mark of a control that somebody has changed: its tag is "Yes" until the page shows the change.
#pragma once

#include <QVariant>
#include <QWidget>

namespace velloria::site {

inline void setEdited(QWidget& control, bool isEdited) {
    control.setProperty("tag", isEdited ? QStringLiteral("Yes") : QString());
}

inline bool isEdited(const QWidget& control) {
    return control.property("tag").toString() == QStringLiteral("Yes");
}

} // namespace velloria::site
