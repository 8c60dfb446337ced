#include "editor/forms/editor_commands.h"

#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "store/genre_list.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {

desktop::MenuCommands editorCommands(desktop::Context& context) {
    const auto onEditor = [&context](auto routine) {
        return [&context, routine] { (context.windows.get<frmContents>().*routine)(); };
    };
    const auto onCalendar = [&context](auto routine) {
        return [&context, routine] { (context.windows.get<frmCalender>().*routine)(); };
    };
    const auto showPane = [&context](int index) {
        return [&context, index] { context.windows.get<frmContents>().showPane(index); };
    };
    const auto writeToday = [&context] {
        context.windows.get<frmCalender>().Calender_DateClick(context.clock.now().date());
    };
    const auto postToBlog = [&context] {
        auto& calendar = context.windows.get<frmCalender>();
        calendar.PostBlog(calendar.selectedBlog());
    };
    const auto rebuildGenres = [&context] {
        store::genreCommand(context.desk, [&context] { context.windows.get<OpenDay>().MakeGenretxt(); });
    };
    return {
        {"MnuWriteDiary"_L1, {}, writeToday},
        {"MnuAddDiary"_L1, {Qt::CTRL | Qt::Key_N}, onCalendar(&frmCalender::Btn_New_Click)},
        {"MnuDeleteDiary"_L1, {}, onCalendar(&frmCalender::Btn_Delete_Click)},
        {"MnuSaveDiary"_L1, {Qt::CTRL | Qt::Key_U, Qt::CTRL | Qt::Key_S}, onEditor(&frmContents::Btn1Click_ToolBar)},
        {"MnuRestoreDraft"_L1, {}, [&context] { context.windows.get<frmContents>().day().restoreDraft(); }},
        {"MnuBlogUp"_L1, {}, postToBlog},
        {"MnuBlogView"_L1, {}, onCalendar(&frmCalender::ViewBlog)},
        {"MnuOpenBlogManagement"_L1, {}, onCalendar(&frmCalender::BlogManagement)},
        {"MnuViewOldDiary"_L1, {}, onEditor(&frmContents::picPrevDiaryExist_Click)},
        {"MnuReConstructionGenre"_L1, {}, rebuildGenres},
        {"MnuCalender"_L1, {}, onCalendar(&frmCalender::showChild)},
        // The panes have these keys themselves. Here they stand behind the captions alone: a menu that hangs on no bar
        // takes no keys.
        {"mnuUndo"_L1, {Qt::CTRL | Qt::Key_Z}, onEditor(&frmContents::mnuUndo_Click)},
        {"mnuRedo"_L1, {Qt::CTRL | Qt::Key_Y}, onEditor(&frmContents::mnuRedo_Click)},
        {"mnuCopy"_L1, {Qt::CTRL | Qt::Key_C}, onEditor(&frmContents::Copy)},
        {"mnuCut"_L1, {Qt::CTRL | Qt::Key_X}, onEditor(&frmContents::Cut)},
        {"mnuPaste"_L1, {Qt::CTRL | Qt::Key_V}, onEditor(&frmContents::Paste)},
        {"mnuGetURL"_L1, {}, onEditor(&frmContents::Btn2Click_ToolBar)},
        {"mnuInsertURL"_L1, {}, onEditor(&frmContents::Btn3Click_ToolBar)},
        {"mnuInsertFromCB_PlainText"_L1, {}, onEditor(&frmContents::InsertFromCB_Text)},
        {"mnuInsertFromCB_ExchangedText"_L1, {}, onEditor(&frmContents::InsertFromCB_Exchange)},
        {{}, {Qt::CTRL | Qt::Key_P}, onEditor(&frmContents::Btn5Click_ToolBar)},
        {{}, {Qt::CTRL | Qt::Key_1}, showPane(0)},
        {{}, {Qt::CTRL | Qt::Key_2}, showPane(1)},
        {{}, {Qt::CTRL | Qt::Key_3}, showPane(2)},
    };
}

} // namespace velloria::editor
