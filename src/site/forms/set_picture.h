// A small live picture of a customize set, beside the box in which it is chosen.
#pragma once

#include "desktop/context.h"

#include <QWidget>

#include <memory>

class QWebEngineProfile;
class QWebEngineView;

namespace velloria::site {

/// The month of today as the set would show it: one page without frames, division and feeds, which are none of the
/// set's, and without private entries. It takes neither keys nor mouse, and runs no scripts. Its page is a local one,
/// which goes with the widget; one widget at a time.
class SetPicture : public QWidget {
    Q_OBJECT
public:
    /// The browser engine starts with the first picture.
    explicit SetPicture(desktop::Context& context, QWidget* parent = nullptr);
    ~SetPicture() override;

    /// Makes the picture of the set anew. A set that is not there, and whatever else goes wrong, gives an empty one:
    /// who chooses sees no box of it.
    void showSet(const QString& name);

    QSize sizeHint() const override { return {320, 240}; }

private:
    void makePage(const QString& setFile) const;
    void startEngine();

    desktop::Context& m_context;
    std::shared_ptr<QWebEngineProfile> m_profile;
    QWebEngineView* m_view = nullptr;
};

} // namespace velloria::site
