#include "memo/forms/captions.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace velloria::memo {
namespace {

struct Caption {
    QLatin1StringView name;
    QLatin1StringView text;
};

constexpr Caption kTexts[] = {
    {"labelFind"_L1, "&Find"_L1},
    {"labelFilter"_L1, "Show cate&gory"_L1},
    {"Btn_New"_L1, "&New"_L1},
    {"Btn_Delete"_L1, "&Delete"_L1},
    {"labelTitle"_L1, "&Title"_L1},
    {"labelCategory"_L1, "&Category"_L1},
    {"labelClosed"_L1, "This memo is locked."_L1},
    {"Btn_Unlock"_L1, "&Unlock..."_L1},
    {"chkLock"_L1, "Loc&k this memo"_L1},
    {"Btn_Save"_L1, "&Save"_L1},
    {"mnuMemo"_L1, "&Memo"_L1},
    {"actNew"_L1, "&New"_L1},
    {"actSave"_L1, "&Save"_L1},
    {"actDelete"_L1, "&Delete"_L1},
    {"actFind"_L1, "&Find"_L1},
    {"actRefresh"_L1, "&Refresh"_L1},
    {"actPutBack"_L1, "Put &back a removed memo..."_L1},
    {"actAskAtStart"_L1, "Ask for the &password at the start"_L1},
    {"actLockAgain"_L1, "&Lock again"_L1},
    {"actClose"_L1, "&Close"_L1},
};

constexpr Caption kAccessibleNames[] = {
    {"txtFind"_L1, "Find"_L1},   {"cmbFilter"_L1, "Show category"_L1}, {"lstMemos"_L1, "Memos"_L1},
    {"txtTitle"_L1, "Title"_L1}, {"cmbCategory"_L1, "Category"_L1},    {"txtMemo"_L1, "Text of the memo"_L1},
};

} // namespace

void makeEnglish(QWidget& window) {
    for (const auto& [name, text] : kTexts) {
        auto* control = window.findChild<QObject*>(name);
        if (auto* menu = qobject_cast<QMenu*>(control))
            menu->setTitle(text);
        else if (control)
            control->setProperty("text", QString(text));
    }
    for (const auto& [name, text] : kAccessibleNames) {
        if (auto* control = window.findChild<QWidget*>(name))
            control->setAccessibleName(text);
    }
    window.setWindowTitle(u"VellMemo"_s);
}

} // namespace velloria::memo
