// The maker of the image tag: it shows a picture, proposes its name on the site, inserts its tag and registers it.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmHTMLMakeImage;
}

namespace velloria::editor {

struct ImageAttributes;

/// It stands in front of the editor and blocks nothing.
class frmHTMLMakeImage : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmHTMLMakeImage(desktop::Context& context);
    ~frmHTMLMakeImage() override;

    /// Takes the picture as if it had been chosen here: previews it, and names it.
    void choose(const QString& path);

private:
    void connectControls();
    void Btn_Open_Click();
    void Btn_OK_Click();
    void preview(const QString& path);
    void takeOwnName(const QString& path);
    void nameChanged();
    void renewAutomaticName();
    void buildTag();
    ImageAttributes attributes() const;
    bool takesAutomaticName() const;
    QString automaticName() const;
    QString siteName() const;
    void registerImage();

    std::unique_ptr<Ui::frmHTMLMakeImage> ui;
    bool m_isNaming = false; ///< the program fills the boxes that make the name
};

} // namespace velloria::editor
