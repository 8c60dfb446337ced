#include "site/division.h"

#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::Divided;
using site::Division;
using site::IsMultiple;
using site::PageNames;

TEST(Division, IsMultipleWorksInFloatingPoint) {
    EXPECT_TRUE(IsMultiple(6, 3));
    EXPECT_TRUE(IsMultiple(0, 31));
    EXPECT_TRUE(IsMultiple(-4, 2));
    EXPECT_TRUE(IsMultiple(1, 0.25));
    EXPECT_FALSE(IsMultiple(7, 3));
    EXPECT_FALSE(IsMultiple(2004, 100));
}

class DivisionSettings : public SiteHome {
protected:
    Division read() const { return Division::read(site::SiteSettings(session)); }
};

TEST_F(DivisionSettings, NothingStoredIsOnePageOfAMonthBelowTheMonthFile) {
    const Division division = read();
    EXPECT_EQ(division.divided, Divided::No);
    EXPECT_EQ(division.daysPerPage, 31);
    EXPECT_EQ(division.firstPage, site::FirstPage::OnPageOfItsOwn);
    EXPECT_EQ(division.names, PageNames::Number);
}

TEST_F(DivisionSettings, AnyNumberButZeroDividesAndAnyButOneLeavesTheMonthFileEmpty) {
    for (const auto& [value, divided] :
         {std::pair(u"1"_s, Divided::Yes), {u"2"_s, Divided::Unlinked}, {u"-1"_s, Divided::Unlinked}}) {
        setSetting(keys::divide::kDiaryDivide, value);
        setSetting(keys::divide::kDiaryOnTop, value);
        EXPECT_EQ(read().divided, divided);
        EXPECT_EQ(read().startsOnMonthFile(), value == u"1"_s);
    }
    setSetting(keys::divide::kDiaryDivide, u"0"_s);
    EXPECT_TRUE(read().startsOnMonthFile());
}

TEST_F(DivisionSettings, TermZeroActsAsAWholeMonth) {
    for (const QString& term : {u"0"_s, u""_s, u"abc"_s}) {
        setSetting(keys::divide::kDiaryTerm, term);
        EXPECT_EQ(read().daysPerPage, 31) << term.toStdString();
    }
    setSetting(keys::divide::kDiaryTerm, u"12abc"_s);
    EXPECT_EQ(read().daysPerPage, 12);
}

TEST_F(DivisionSettings, DayFilesNeedOneDayAPageInADividedMonth) {
    const struct {
        QString divide;
        QString term;
        PageNames expected;
    } cases[] = {
        {u"1"_s, u"1"_s, PageNames::Day},    {u"1"_s, u"2"_s, PageNames::Number}, {u"1"_s, u"0"_s, PageNames::Number},
        {u"0"_s, u"1"_s, PageNames::Number}, {u"2"_s, u"1"_s, PageNames::Number},
    };
    for (const auto& c : cases) {
        setSetting(keys::divide::kUseFileName2Day, u"1"_s);
        setSetting(keys::divide::kDiaryDivide, c.divide);
        setSetting(keys::divide::kDiaryTerm, c.term);
        EXPECT_EQ(read().names, c.expected) << c.divide.toStdString() << ' ' << c.term.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
