// Every window beside the main window. What holds for all of them is tried on each; scripts/lint sees to it that none
// is left out here. The way of the Tab key through a new window has its line in tab_ring_test.cpp.
#pragma once

#include "blog/forms/frmBlogManager.h"
#include "convert/forms/frmHTML2TXTSetting.h"
#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeImage.h"
#include "editor/forms/frmHTMLMakeList.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "exchange/forms/frmExportCust.h"
#include "exchange/forms/frmOtherFormats.h"
#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"
#include "shell/forms/frmBackups.h"
#include "shell/forms/frmOptions.h"
#include "shell/forms/frmUserManager.h"
#include "site/forms/frmCustomize.h"
#include "site/forms/frmCustomizeSelection.h"
#include "site/forms/frmFind.h"
#include "site/forms/frmSaveLog.h"
#include "site/forms/frmSetting.h"
#include "support/desktop_home.h"

namespace velloria::tests {

template <class... Kinds, class Look>
void lookAtEach(desktop::Context& context, const Look& look) {
    const auto lookAt = [&](desktop::ToolWindow& window) {
        window.showWindow();
        EXPECT_TRUE(becomesVisible(window));
        settle();
        look(window);
        window.reject();
        settle();
    };
    (lookAt(context.windows.get<Kinds>()), ...);
}

/// `look` gets each of them, one after the other, while it is shown.
template <class Look>
void forEveryWindow(desktop::Context& context, const Look& look) {
    lookAtEach<blog::frmBlogManager, convert::frmHTML2TXTSetting, editor::frmHTMLMakeFont, editor::frmHTMLMakeHR,
               editor::frmHTMLMakeImage, editor::frmHTMLMakeList, exchange::frmDeleteImportDiary, exchange::frmExport,
               exchange::frmExportCust, exchange::frmOtherFormats, registers::frmResistFiles, registers::frmResistLogs,
               shell::frmBackups, shell::frmOptions, shell::frmUserManager, site::frmCustomize,
               site::frmCustomizeSelection, site::frmFind, site::frmSaveLog, site::frmSetting>(context, look);
}

} // namespace velloria::tests
