// Edits the selected customize set, and the text pieces that the sets share, while the page can be watched.
#pragma once

#include "desktop/settings_table.h"
#include "desktop/tool_window.h"
#include "site/customize_backup.h"
#include "site/forms/live_preview.h"
#include "site/set_watch.h"

#include <QTimer>

#include <map>
#include <memory>

namespace Ui {
class frmCustomize;
}

namespace velloria::site {

class PiecePanel;
class RowPanel;
class SetPicture;
enum class CustomizePanel;
enum class PageText;
struct CustomizeCategory;

/// Apply writes the set and the text that is shown. With the setting for it, and a set that is there, each change is
/// written and shown at once, and a way out other than OK takes all of that back.
class frmCustomize : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the set can't be read.
    explicit frmCustomize(desktop::Context& context);
    ~frmCustomize() override;

    void reject() override;
    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addPanels();
    void addRowPanel(CustomizePanel panel);
    void addPiecePanel(CustomizePanel panel);
    void connectControls();

    const CustomizeCategory& category() const;
    /// The panel with texts that is shown, if one is.
    PiecePanel* textPanel() const;

    void loadSet();
    void loadPiece();
    void fillSets();
    void showCategory();
    void startLive();

    void edited(QWidget& box);
    void left(QWidget& box);
    void chosen(QWidget& box);
    void setChanged(bool isChanged);
    bool asksToSave() const;

    /// False when the user keeps what another program has written.
    bool apply();
    void refresh();
    void takeBack();

    void Btn_OK_Click();
    void Btn_Apply_Click();
    void giveUp();

    // Categories, pieces and sets (frmCustomize_sets.cpp). A choice that comes to nothing leaves the box at what is
    // shown.
    void chooseCategory();
    void chooseHalf(PageText half);
    bool mayLeaveText();
    void choosePiece(const QString& name);
    void usePiece(const QString& name);
    void newPiece();
    void deletePiece();
    void chooseSet(const QString& name);
    void changeToSet(const QString& name);
    void newSet();
    void deleteSet();
    void goOnLive();

    std::unique_ptr<Ui::frmCustomize> ui;
    std::map<CustomizePanel, QWidget*> m_panels;
    std::vector<RowPanel*> m_rowPanels;
    desktop::SettingsTable m_table; ///< of all panels
    int m_category = 0;
    CustomizeBackup m_backup;
    SetWatch m_watch;
    LivePreview m_preview;
    SetPicture* m_picture;
    QTimer m_pictureDelay; ///< the window and its keys come first
    bool m_changed = false;
    bool m_loading = false;
    bool m_realTime = false;
    bool m_wasShown = false;
};

} // namespace velloria::site
