// The user's data of each blog: login and addresses.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmBlogManager;
}

namespace velloria::desktop {
class LineBox;
} // namespace velloria::desktop

namespace velloria::blog {

/// A template says which of the two posting addresses are the user's. Picking another blog drops what was typed for the
/// last one, and so does closing, without a word.
class frmBlogManager : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmBlogManager(desktop::Context& context);
    ~frmBlogManager() override; ///< keeps the picked blog for the next time

    /// For another data folder: the list of blogs as it has their templates now, and its data of the picked one. What
    /// somebody was typing belonged to the folder that was.
    void fillBlogs();

    /// The data of the picked blog were changed elsewhere: boxes in which nobody has typed show them as they are now,
    /// so that a save does not undo the change.
    void readAgain();

private:
    /// A box, the key that it is stored under, and what people call it.
    struct Field {
        desktop::LineBox* box;
        core::Setting row;
        QString name;
    };

    void fillList();
    void select(const QString& blog);
    void showBlog();
    void showDataOf(const QString& blog);
    void showNone();
    static void setBox(desktop::LineBox& box, bool isUsers, const QString& text);
    void colourBoxes() const;
    void Btn_Save_Click();
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Ui::frmBlogManager> ui;
    std::vector<Field> m_fields; ///< in the order of storing
    bool m_isLoading = false;    ///< the program fills the boxes: their changes mean nothing
};

} // namespace velloria::blog
