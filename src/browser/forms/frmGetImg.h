// The choice of images of an entry.
#pragma once

#include "desktop/context.h"

#include <QDialog>

#include <memory>

class QTreeWidgetItem;

namespace Ui {
class frmGetImg;
}

namespace velloria::browser {

/// At most three images may be checked. How it was left stands in `Result`.
class frmGetImg : public QDialog {
    Q_OBJECT
public:
    explicit frmGetImg(desktop::Context& context);
    ~frmGetImg() override;

    /// One row for each image of the entry's text.
    void fill(const QString& body);

    QString Result; ///< "OK", "Cancel" or "Exit"; "" as long as it is open
    QString Images1;
    QString Images2;
    QString Images3;

public Q_SLOTS:
    void reject() override; ///< the frame's button and Esc are Cancel

private:
    void onCheck(QTreeWidgetItem* item);
    void takeImages();
    void leave(const QString& result);
    int checkedCount() const;

    desktop::Context& m_context;
    std::unique_ptr<Ui::frmGetImg> ui;
};

} // namespace velloria::browser
