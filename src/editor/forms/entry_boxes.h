// The boxes of the editor beside its panes: title, genre, weather, privacy.
#pragma once

#include "desktop/combo.h"
#include "desktop/line_box.h"
#include "store/entry.h"

namespace velloria::editor {

class EntryBoxes : public QObject {
    Q_OBJECT
public:
    /// Belongs to the title.
    EntryBoxes(desktop::LineBox& title, desktop::Combo& genre, desktop::Combo& weather, desktop::Combo& privacy);

    /// Shows the values of an entry, none of them missing.
    void fill(const store::Entry& entry);
    /// The genre of an entry that is to be made.
    void showFirstGenre();
    /// Puts what the boxes hold into the entry.
    void read(store::Entry& entry) const;
    /// The list of genres; what is shown stays.
    void setGenres(const QStringList& genres);

    void setEnabled(bool isOn);
    void commitComposition();

Q_SIGNALS:
    void changed();

private:
    desktop::LineBox& genreLine() const;

    desktop::LineBox& m_title;
    desktop::Combo& m_genre;
    desktop::Combo& m_weather;
    desktop::Combo& m_privacy;
};

} // namespace velloria::editor
