// What the file dialogs show at their start: a folder that is there, and a name where a file is to be saved.
#include "core/day_key.h"
#include "desktop/qt_desk.h"
#include "exchange/customize_exchange.h"
#include "exchange/export.h"
#include "site/save_html.h"
#include "support/desktop_home.h"

#include <QFileDialog>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// What a dialog proposed, as "folder|name".
class FileDialogs : public TestHome {
protected:
    QString proposedBy(const std::function<void()>& action) {
        QString proposed;
        whenShown<QFileDialog>([&](QFileDialog& dialog) {
            proposed =
                dialog.directory().absolutePath() + u'|' + dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->text();
            // The cancelled export says so.
            QTimer::singleShot(0, &dialog, &QDialog::reject);
            whenShown<QMessageBox>([](QMessageBox& box) { box.accept(); });
        });
        action();
        return proposed;
    }
    QString proposedBySaveAs() {
        return proposedBy([&] {
            site::SaveHtml({session, clock, qtDesk}).saveAsCommand();
            qtDesk.message(platform::MessageKind::Plain, u"end"_s, u"Velloria"_s);
        });
    }
    QString proposedFor(const exchange::ExportSettings& settings) {
        return proposedBy([&] { exchange::clsExport({session, clock, qtDesk}, settings).run(); }).section(u'|', 1);
    }

    desktop::QtDesk qtDesk;
};

TEST_F(FileDialogs, AFolderThatIsMissingIsTheHomeFolderAndNoFileName) {
    for (const QString& folder : {path(u"Pictures"_s), path(u"Documents/deeper"_s), u""_s, u"Pictures"_s}) {
        for (const platform::PathMode mode : {platform::PathMode::Open, platform::PathMode::Save})
            EXPECT_EQ(proposedBy([&] {
                          qtDesk.choosePath({mode, {}, {}, folder});
                          qtDesk.message(platform::MessageKind::Plain, u"end"_s, u"Velloria"_s);
                      }),
                      QDir::homePath() + u'|')
                << folder.toStdString();
    }
    writeFile(path(u"file"_s), "");
    EXPECT_EQ(proposedBy([&] {
                  qtDesk.choosePath({platform::PathMode::Open, {}, {}, path(u"file"_s)});
                  qtDesk.message(platform::MessageKind::Plain, u"end"_s, u"Velloria"_s);
              }),
              QDir::homePath() + u'|');
}

TEST_F(FileDialogs, SaveHtmlAsProposesTheMonthFile) {
    EXPECT_EQ(proposedBySaveAs(), QDir(session.FilePath).absolutePath() + u"|index.htm"_s);
    useSite(u"diary.html"_s);
    EXPECT_EQ(proposedBySaveAs(), QDir(session.FilePath).absolutePath() + u"|diary.html"_s);
    writeFile(session.FilePath + u"diary.html"_s, "old");
    EXPECT_EQ(proposedBySaveAs(), QDir(session.FilePath).absolutePath() + u"|diary.html"_s);
    session.FilePath = path(u"gone/"_s);
    EXPECT_EQ(proposedBySaveAs(), QDir::homePath() + u"|diary.html"_s);
}

TEST_F(FileDialogs, AnExportProposesItsPeriodAndFormat) {
    exchange::ExportSettings settings;
    settings.period = {store::Period::Kind::Between, u"2004/05/01"_s, u"2004/05/31"_s};
    EXPECT_EQ(proposedFor(settings), u"2004_05_01-2004_05_31.txt"_s);
    settings.format = exchange::ExportFormat::Html;
    settings.period = exchange::exportMonth(u"2004"_s, u"5"_s);
    EXPECT_EQ(proposedFor(settings), u"2004_05.htm"_s);
    settings.period = {store::Period::Kind::Day, u"2004/05/06"_s, {}};
    EXPECT_EQ(proposedFor(settings), u"2004_05_06.htm"_s);
    settings.format = exchange::ExportFormat::User;
    settings.userFormat = u"mine.csv"_s;
    EXPECT_EQ(proposedFor(settings), u"2004_05_06.csv"_s);
    settings.userFormat = u"mine"_s;
    EXPECT_EQ(proposedFor(settings), u"2004_05_06"_s);
}

TEST_F(FileDialogs, AWrongMonthProposesNoOtherFolder) {
    exchange::ExportSettings settings;
    settings.period = {store::Period::Kind::Month, u"../x/"_s, {}};
    EXPECT_EQ(proposedFor(settings), u"___x.txt"_s);
}

TEST_F(FileDialogs, WhoHasAQuestionOfTheirOwnBeforeReplacingIsNotAskedByTheDialogAsWell) {
    const auto asks = [&](const std::function<void()>& action) {
        bool isAsking = false;
        whenShown<QFileDialog>([&](QFileDialog& dialog) {
            isAsking = !dialog.testOption(QFileDialog::DontConfirmOverwrite);
            QTimer::singleShot(0, &dialog, &QDialog::reject);
        });
        action();
        return isAsking;
    };
    const core::Run shown{session, clock, qtDesk};
    EXPECT_TRUE(asks([&] { site::SaveHtml(shown).saveAsCommand(); }));
    EXPECT_FALSE(asks([&] {
        exchange::CustomizeExchange(shown).ExportCustomize(u"Customize"_s, exchange::CustomizeFormat::Ini, {});
    }));
}

} // namespace
} // namespace velloria::tests
