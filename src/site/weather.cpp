#include "site/weather.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace velloria::site {

QString weatherIcon(const QString& weather) {
    static const QHash<QString, QString> kIcons{{u"晴"_s, u"Shinny.gif"_s},
                                                {u"曇"_s, u"Cloudy.gif"_s},
                                                {u"雨"_s, u"Rainy.gif"_s},
                                                {u"雪"_s, u"Snowy.gif"_s},
                                                {u"雷"_s, u"Thunder.gif"_s}};
    return kIcons.value(weather);
}

const QStringList& weatherPictures() {
    static const QStringList kPictures{u"Shinny.gif"_s, u"Cloudy.gif"_s, u"Rainy.gif"_s, u"Thunder.gif"_s,
                                       u"Snowy.gif"_s};
    return kPictures;
}

} // namespace velloria::site
