// The calendar window: the day to work on, and what can be done with its entries. It follows the open day.
#pragma once

#include "desktop/mdi_child.h"
#include "editor/open_day.h"

#include <QTimer>

#include <memory>

namespace Ui {
class frmCalender;
}

namespace velloria::editor {

class BlogBar;

class frmCalender : public desktop::MdiChild {
    Q_OBJECT
public:
    explicit frmCalender(desktop::Context& context);
    ~frmCalender() override; ///< keeps the selected blog for the next time

    /// Shows the day in the editor, the unsaved changes of the shown one asked about; then it is `EnterDay` and the
    /// calendar's value. On failure, which is thrown, all of these stay.
    void Calender_DateClick(const QDate& date);
    void Btn_New_Click();
    void Btn_Delete_Click();
    void Btn_Find_Click();

    /// The size that it comes up with: what the editor's standard place leaves above it, or more in a large font.
    QSize ownSize() const;

    /// Sets the calendar's value and marks the days of its month; a diary that can't be read marks none. Opens nothing.
    void showDay(const QDate& day);

    /// Sends the open entry, as the editor shows it, to the blog of that template. This and the next two drive the
    /// browser to their end while events are served; called meanwhile, each only beeps. Without a blog the first status
    /// panel says so.
    void PostBlog(const QString& blog);
    /// Shows the picked blog as its readers see it.
    void ViewBlog();
    /// Shows the service's own pages for the picked blog.
    void BlogManagement();
    /// The template's name; "" when none is picked.
    QString selectedBlog() const;

    /// The list of blogs as the data folder has their templates now; what is picked stays.
    void fillBlogs();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void fitToFont();
    void markDays();
    void mark(const store::DaysWithEntries& days);
    void Btn_BlogControl_Click();

    std::unique_ptr<Ui::frmCalender> ui;
    OpenDay& m_day;
    BlogBar* m_blogBar;
    QTimer m_minute; ///< midnight comes while nobody is there
};

} // namespace velloria::editor
