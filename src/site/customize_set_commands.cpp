#include "site/customize_set_commands.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/customize_sets.h"

#include <algorithm>
#include <iterator>

namespace velloria::site {
namespace {

/// What became of it before it failed is the failure to tell, not this.
void bringBack(const QString& file, const std::optional<QByteArray>& bytes) {
    try {
        if (bytes)
            platform::replaceFile(file, *bytes, platform::Durability::Durable);
        else
            platform::removeFile(file);
    } catch (const platform::Failure&) {
        return;
    }
}

bool canBeSelected(const core::Session& session, const QString& name) {
    try {
        existingSetFile(session, name);
        return true;
    } catch (const platform::Failure&) {
        return false;
    }
}

/// The one that comes into the place of the set in the list, or the nearest that can be selected; "" when it is the
/// last of all.
QString nextSet(const core::Session& session, const QString& name) {
    QStringList names = customizeSets(session);
    const qsizetype at = names.indexOf(name);
    if (at >= 0)
        names.removeAt(at);
    const qsizetype place = qMax<qsizetype>(at, 0);
    QStringList order = names.sliced(place);
    std::ranges::reverse_copy(names.first(place), std::back_inserter(order));
    const auto found = std::ranges::find_if(order, [&](const QString& other) { return canBeSelected(session, other); });
    return found == order.end() ? order.value(0) : *found;
}

} // namespace

void makeCustomizeSet(core::Session& session, const CustomizeBackup& backup, const QString& name,
                      const std::function<void()>& apply) {
    const QString old = session.CustIniFile;
    const QString made = customizeSetFile(session, name);
    const bool isOther = !platform::isSameFile(old, made);
    const std::optional<QByteArray> replaced = platform::readFileIfThere(made);
    if (isOther)
        platform::replaceFile(made, platform::readFileIfThere(old).value_or(QByteArray()),
                              platform::Durability::Durable);
    session.CustIniFile = made;
    try {
        apply();
        if (isOther)
            backup.restore();
    } catch (...) {
        session.CustIniFile = old;
        bringBack(made, replaced);
        throw;
    }
}

void deleteCustomizeSet(core::Session& session, const QString& name) {
    const QString old = selectedCustomizeSet(session);
    const QString deleted = customizeSetFile(session, name);
    const QString next = nextSet(session, name);
    if (next.isEmpty())
        platform::copyFile(core::files::kFirstCustomizeIni.in(session), core::files::kCustomizeIni.in(session), 0666,
                           platform::Durability::Durable);
    const QString selected = next.isEmpty() ? core::GetBaseName(core::files::kFirstCustomizeIni.name) : next;
    selectCustomizeSet(session, selected);
    if (!platform::isSameFile(deleted, session.CustIniFile)) {
        try {
            platform::removeFile(deleted);
        } catch (...) {
            selectCustomizeSet(session, old);
            throw;
        }
    }
}

} // namespace velloria::site
