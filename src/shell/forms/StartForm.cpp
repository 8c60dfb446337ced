#include "shell/forms/StartForm.h"

#include "core/files.h"
#include "platform/directory.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

QPixmap namePicture(qreal ratio) {
    constexpr QSize kSize(360, 140);
    QPixmap picture(kSize * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(QColor(0xF6, 0xF4, 0xEE));
    QPainter painter(&picture);
    painter.setPen(QColor(0x2F, 0x6F, 0x73));
    QFont font = painter.font();
    font.setPointSize(font.pointSize() * 2);
    painter.setFont(font);
    painter.drawText(QRect({0, 0}, kSize), Qt::AlignCenter, u"Velloria v"_s + core::kProgramVersion.text());
    painter.drawRect(QRect({0, 0}, kSize).adjusted(0, 0, -1, -1));
    return picture;
}

} // namespace

StartForm::StartForm(desktop::Context& context)
    : QSplashScreen(QPixmap(), Qt::WindowStaysOnTopHint) {
    setObjectName(u"StartForm"_s);
    const QString file = platform::existingPath(core::files::kTitlePicture.in(context.session));
    const QPixmap title = platform::fileExists(file) ? QPixmap(file) : QPixmap();
    setPixmap(title.isNull() ? namePicture(devicePixelRatio()) : title);
}

} // namespace velloria::shell
