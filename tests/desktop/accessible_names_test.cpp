// What takes keys has a name, so that it can be told to who does not see it.
#include "browser/forms/frmAuthentication.h"
#include "browser/forms/frmBrowser.h"
#include "every_window.h"
#include "makers_home.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/frmPassword.h"

#include <QAccessible>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class AccessibleNames : public Makers {
protected:
    /// The controls of the window that have none, the lines inside boxes among them.
    static QStringList missingIn(QWidget& window) {
        QStringList missing;
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            const bool takesKeys = (widget->focusPolicy() & Qt::TabFocus) || qobject_cast<QLineEdit*>(widget);
            // A scroll area's own parts and the lists that open from boxes speak for what they belong to.
            if (!takesKeys || widget->isWindow() || !widget->isVisibleTo(&window))
                continue;
            const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
            if (!face || face->text(QAccessible::Name).isEmpty())
                missing += widget->parentWidget()->objectName() + u'/' + widget->objectName() + u':' +
                           QLatin1StringView(widget->metaObject()->className());
        }
        return missing;
    }
};

TEST_F(AccessibleNames, OfTheChildWindows) {
    EXPECT_EQ(missingIn(contents()).join(u' ').toStdString(), "");
    EXPECT_EQ(missingIn(calendar()).join(u' ').toStdString(), "");
    // Before its engine runs: the page names what is in it.
    EXPECT_EQ(missingIn(context.windows.get<browser::frmBrowser>()).join(u' ').toStdString(), "");
}

TEST_F(AccessibleNames, OfTheWindowsBeside) {
    forEveryWindow(context, [](QWidget& window) {
        EXPECT_EQ(missingIn(window).join(u' ').toStdString(), "") << window.objectName().toStdString();
    });
    shell::frmLogin login(u""_s);
    EXPECT_EQ(missingIn(login).join(u' ').toStdString(), "");
    shell::frmPassword password(u"x"_s, platform::PasswordLines::WithConfirmation, nullptr);
    EXPECT_EQ(missingIn(password).join(u' ').toStdString(), "");
    browser::frmAuthentication serverLogin(QUrl(u"http://example/"_s), u"realm"_s, nullptr);
    EXPECT_EQ(missingIn(serverLogin).join(u' ').toStdString(), "");
}

} // namespace
} // namespace velloria::tests
