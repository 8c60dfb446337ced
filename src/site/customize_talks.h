// What is said when a text piece or a customize set is made or deleted: the same talk with other words.
#pragma once

#include "core/run.h"

#include <QStringList>

#include <functional>

namespace velloria::site {

struct CustomizeTalk {
    QStringView title; ///< of the boxes that make one
    QStringView prompt;
    QStringView made;
    QStringView taken;
    QStringView replaced;
    QStringView what;     ///< in front of the name of one that is deleted
    QStringView reserved; ///< a name that something else has
};

extern const CustomizeTalk kPieceTalk;
extern const CustomizeTalk kSetTalk;

/// Asks for a name that is not among `names` without regard to case, or that may be replaced, and lets `make` make it.
/// Tells how it went. A name that no file can have is like a No. What `make` throws ends the command.
void newCommand(const core::Run& run, const CustomizeTalk& talk, const QStringList& names,
                const std::function<void(const QString& name)>& make);

/// Whether the user lets it go.
bool mayDelete(const core::Run& run, const CustomizeTalk& talk, const QString& name);
/// Says that it is gone.
void tellDeleted(const core::Run& run, const CustomizeTalk& talk, const QString& name);

} // namespace velloria::site
