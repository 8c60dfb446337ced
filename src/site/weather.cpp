#include "site/weather.h"

#include "core/files.h"
#include "platform/directory.h"
#include "platform/file_write.h"
#include "registers/file_register.h"

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

void placeWeatherPictures(const core::Session& session, registers::SiteFiles& siteFiles) {
    const registers::FileRegister files(session.databaseFile());
    const bool hasSite = !session.FilePath.isEmpty();
    if (hasSite)
        platform::makeFolder(core::files::kParts.below(session.FilePath));
    for (const QString& name : weatherPictures()) {
        const QString source = platform::existingPath(core::files::kParts.in(session) + u'/' + name);
        const QString target = hasSite ? core::files::kParts.below(session.FilePath) + u'/' + name : QString();
        // In a site that is the data folder the picture is there already, and yet unknown to the upload.
        const bool isInPlace = platform::fileExists(target) && !platform::isSameFile(source, target);
        if (!platform::fileExists(source) || !siteFiles.isCopy(source) || isInPlace)
            continue;
        // Registered first: a copy that fails is made up for by the next run, a missing row would never be.
        files.addCommonFiles({name}, registers::SiteSide::Current);
        if (hasSite)
            platform::placeFile(source, target);
    }
}

} // namespace velloria::site
