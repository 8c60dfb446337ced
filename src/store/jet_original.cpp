#include "store/jet_original.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/file_write.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {

void keepJetOriginal(const core::Session& session) {
    const QString diary = session.databaseFile();
    QString kept = core::files::kJetDiary.in(session);
    const QString base = core::GetBaseName(kept);
    for (int i = 2; QFileInfo::exists(kept) || QFileInfo(kept).isSymLink(); ++i) {
        if (QFileInfo(kept).isFile() && platform::haveSameBytes(kept, diary))
            return;
        kept = base + u"-%1.mdb"_s.arg(i);
    }
    platform::copyFile(diary, kept, platform::modeOf(diary, 0600), platform::Durability::Durable);
}

} // namespace velloria::store
