#include "interpreter/js/apitest.h"

#include <QLocale>
#include <QTimeZone>

namespace Torvix {
namespace {

using JsIntlTest = ApiTest;

TEST_F(JsIntlTest, TellsTheSystemsLocaleAndTimeZoneWhateverIsAskedFor)
{
    const QString system = QLocale::system().bcp47Name() + ',' + QTimeZone::systemTimeZone().id();
    ASSERT_TRUE(run("function told(format) { var o = format.resolvedOptions();"
                    "return Object.keys(o).join() + ':' + [o.locale, o.timeZone].join() }"));
    for (const char* format :
         {"Intl.DateTimeFormat()", "new Intl.DateTimeFormat()", "Intl.DateTimeFormat('th-TH', {era: 'long'})",
          "Intl.NumberFormat('de')", "new Intl.NumberFormat()"})
        EXPECT_EQ(text(QStringLiteral("told(%1)").arg(QLatin1String(format))), "locale,timeZone:" + system)
            << format;
    EXPECT_EQ(text("(0, Intl.DateTimeFormat().resolvedOptions)().timeZone"),
              QString::fromUtf8(QTimeZone::systemTimeZone().id()));
    EXPECT_EQ(
        text("[typeof Intl.NumberFormat().format, Intl.DateTimeFormat('x') === Intl.DateTimeFormat('x')]"
             ".join()"),
        "undefined,false");
}

TEST_F(JsIntlTest, SaysOfTheRestThatItIsNotThere)
{
    for (const char* call : {"Intl.Collator()", "new Intl.PluralRules('en')", "Intl.getCanonicalLocales()"})
        EXPECT_EQ(thrown(call), "SyntaxError: Function not implemented. Contact ") << call;
    EXPECT_EQ(text("Intl.extra = 1; Intl.Collator = 2; [Intl.extra, typeof Intl.Collator].join()"),
              ",function");
    EXPECT_EQ(text("Object.keys(Intl).map(n => n + Intl[n].length).join()"),
              "Collator0,NumberFormat0,DateTimeFormat0,PluralRules0,getCanonicalLocales0");
}

TEST_F(JsIntlTest, TheLanguagesOwnFunctionsForLocalesStay)
{
    EXPECT_EQ(text("[(1234.5).toLocaleString('en-US'), 'a'.localeCompare('b'),"
                   " new Date(0).toLocaleDateString('en-US', {timeZone: 'UTC'}),"
                   " 'I'.toLocaleLowerCase('tr'), ['b', 'a'].sort(new Function('a', 'b',"
                   " 'return a.localeCompare(b)')).join('')].join('|')"),
              QString::fromUtf8("1,234.5|-1|1/1/1970|\xc4\xb1|ab"));
}

} // namespace
} // namespace Torvix
