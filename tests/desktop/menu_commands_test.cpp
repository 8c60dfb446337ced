// The tables of commands of all parts, beside the table of the menus.
#include "shell/forms/menu_commands.h"
#include "shell/menu_table.h"
#include "support/desktop_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class MenuCommands : public DesktopHome {
protected:
    desktop::MenuCommands commands = shell::menuCommands(context);
};

TEST_F(MenuCommands, EachRowOfTheMenusHasAnActionAndNoNameIsThereTwice) {
    QStringList rows{u"MnuRestoreDraft"_s}; // not of the table: it comes and goes
    for (const shell::MenuRow& row : shell::menuRows()) {
        const QAction& action = *top().command(row.name);
        if (!action.isSeparator() && !action.menu())
            rows += row.name;
    }
    QStringList names;
    for (const desktop::MenuCommand& command : commands) {
        if (!command.name.isEmpty())
            names += command.name;
    }
    for (const QString& row : rows)
        EXPECT_EQ(names.count(row), 1) << row.toStdString() << ": times in the tables of the parts";
    for (const QString& name : names)
        EXPECT_TRUE(rows.contains(name)) << name.toStdString() << " is no row of the menus";
}

TEST_F(MenuCommands, EachDoesSomethingAndIsReachedByARowOrByKeys) {
    for (const desktop::MenuCommand& command : commands) {
        EXPECT_TRUE(command.action) << command.name.data();
        EXPECT_FALSE(command.name.isEmpty() && command.keys.isEmpty());
    }
}

TEST_F(MenuCommands, HaveEachKeyOnce) {
    QStringList keys;
    for (const desktop::MenuCommand& command : commands) {
        for (const QKeySequence& key : command.keys)
            keys += key.toString();
    }
    QStringList once = keys;
    once.removeDuplicates();
    EXPECT_EQ(keys, once);
    keys.sort();
    EXPECT_EQ(keys.join(u' '), u"Ctrl+1 Ctrl+2 Ctrl+3 Ctrl+C Ctrl+F Ctrl+F6 Ctrl+N Ctrl+P Ctrl+Q Ctrl+S Ctrl+Shift+F6 "
                               "Ctrl+U Ctrl+V Ctrl+X Ctrl+Y Ctrl+Z F1 F6"_s);
}

} // namespace
} // namespace velloria::tests
