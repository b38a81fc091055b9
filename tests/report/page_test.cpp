#include "samplerun.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

/** The page of the sample run in headless Chromium, in a frame that a script looks into. */
class Page : public testing::Test
{
protected:
    /**
     * What the script, the body of a function of the frame's `window` and `document` with the helpers
     * below, returns.
     */
    QJsonObject look(int width, const QByteArray& address, const QByteArray& script,
                     const QByteArray& stream = sampleStream())
    {
        ReporterOptions options;
        options.baseFolder = QStringLiteral("/tests");
        options.reportFolder = m_folder.path();
        write("index.html", rendered("html", recordedRun(stream, m_folder.path()), options));
        write("frame.html", "<!doctype html><iframe id=frame style='border:0' height=700 width=" +
                                QByteArray::number(width) + " src='index.html" + address +
                                "'></iframe><pre id=seen></pre><script>" + helpers +
                                "async function look() {" + script +
                                "}\nonload = async () => { try { seen.textContent = '@' + btoa(unescape("
                                "encodeURIComponent(JSON.stringify(await look())))) + '@'; } "
                                "catch (e) { seen.textContent = 'failed: ' + e; } };</script>");
        const QString dom = browse();
        const QRegularExpressionMatch seen =
            QRegularExpression(QStringLiteral(">@([A-Za-z0-9+/=]+)@<")).match(dom);
        EXPECT_TRUE(seen.hasMatch()) << dom.right(2000).toStdString();
        return QJsonDocument::fromJson(QByteArray::fromBase64(seen.captured(1).toLatin1())).object();
    }

private:
    static constexpr char helpers[] =
        "const window_ = () => frame.contentWindow, page = () => frame.contentDocument;"
        "const shown = () => Array.from(page().querySelectorAll('.case'))"
        "    .filter(e => e.offsetHeight > 0).map(e => e.querySelector('h3').textContent).join();"
        "const press = outcome => page().querySelector(`button[data-outcome=${outcome}]`).click();"
        "const search = text => { const field = page().getElementById('search'); field.value = text;"
        "    field.dispatchEvent(new Event('input')); };"
        "const until = condition => new Promise(done => { const timer = setInterval(() => {"
        "    if (condition()) { clearInterval(timer); done(); } }, 20); });"
        "const key = (target, name) => target.dispatchEvent(new (window_().KeyboardEvent)('keydown',"
        "    { key: name, bubbles: true, cancelable: true }));"
        "const none = () => page().getElementById('none').offsetHeight > 0;";

    void write(const char* name, const QByteArray& text)
    {
        QFile file(m_folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QString browse()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        // The sanitizers' runtime, which tests get preloaded, is nothing for a browser.
        environment.remove(QStringLiteral("LD_PRELOAD"));
        QProcess browser;
        browser.setProcessEnvironment(environment);
        browser.start(QStringLiteral(TORVIX_CHROMIUM),
                      {"--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                       "--disable-background-networking", "--disable-component-update", "--disable-sync",
                       "--hide-scrollbars", "--allow-file-access-from-files",
                       "--user-data-dir=" + m_folder.filePath("profile"), "--virtual-time-budget=1000000",
                       "--dump-dom", "file://" + m_folder.filePath("frame.html")});
        if (!browser.waitForFinished(90'000))
            browser.kill();
        return QString::fromUtf8(browser.readAllStandardOutput());
    }

    QTemporaryDir m_folder;
};

TEST_F(Page, FiltersByOutcomeAndByText)
{
    const QJsonObject seen = look(1000, "",
                                  "const r = {}; r.all = shown();"
                                  "press('failed'); r.failed = shown(); r.address = window_().location.hash;"
                                  "press('flaky'); r.flaky = shown();"
                                  "press('all'); search('suite_MAIL'); r.mail = shown();"
                                  "press('passed'); r.both = shown(); r.none = none();"
                                  "search('add(\\'pear'); press('all'); r.source = shown();"
                                  "search(''); r.again = shown(); r.noneAgain = none(); return r;");
    const QString all = "suite_shop / tst_basket # 50%,suite_mail / tst_cut,suite_shop / tst_retry,"
                        "suite_mail / tst_later,suite_shop / tst_login";
    const std::vector<std::pair<const char*, QString>> table = {
        {"all", all},
        {"failed", "suite_shop / tst_basket # 50%"},
        {"address", "#outcome=failed"},
        {"flaky", "suite_shop / tst_retry"},
        {"mail", "suite_mail / tst_cut,suite_mail / tst_later"},
        {"both", ""},
        {"source", "suite_shop / tst_basket # 50%"},
        {"again", all},
    };
    for (const auto& [key, expected] : table)
        EXPECT_EQ(expected.toStdString(), seen[QLatin1String(key)].toString("?").toStdString()) << key;
    EXPECT_TRUE(seen["none"].toBool());
    EXPECT_FALSE(seen["noneAgain"].toBool(true));
}

TEST_F(Page, OpensAsTheLinkSays)
{
    const QJsonObject seen = look(1000, "#outcome=passed&text=retry",
                                  "return { shown: shown(), text: page().getElementById('search').value };");
    EXPECT_EQ("suite_shop / tst_retry", seen["shown"].toString().toStdString());
    EXPECT_EQ("retry", seen["text"].toString());
}

TEST_F(Page, OpensTheCaseOfALinkWhateverIsFilteredAndFollowsTheNext)
{
    const QJsonObject seen =
        look(1000, "#suite_shop/tst_basket_%23_50%25",
             "const id = 'suite_shop/tst_login', login = page().getElementById(id), r = {};"
             "r.target = page().querySelector(':target').querySelector('h3').textContent;"
             "r.before = login.querySelector('details').open;"
             "press('failed'); login.querySelector('.anchor').click();"
             "await until(() => login.querySelector('details').open); r.hash = window_().location.hash; "
             "r.shown = shown();"
             "r.hrefs = Array.from(page().querySelectorAll('.case')).filter(e => decodeURIComponent("
             "    e.querySelector('.anchor').hash.slice(1)) !== e.id).length; return r;");
    EXPECT_EQ("suite_shop / tst_basket # 50%", seen["target"].toString().toStdString());
    EXPECT_FALSE(seen["before"].toBool(true));
    EXPECT_EQ("#suite_shop/tst_login", seen["hash"].toString().toStdString());
    EXPECT_TRUE(seen["shown"].toString().contains("tst_later")) << "a link shows its case, filter or not";
    EXPECT_EQ(0, seen["hrefs"].toInt(-1));
}

TEST_F(Page, IsUsedByKeys)
{
    const QJsonObject seen =
        look(1000, "",
             "const r = {}, field = page().getElementById('search');"
             "key(page().body, '/'); r.slash = page().activeElement.id;"
             "search('login'); r.login = shown(); key(field, 'Escape'); r.all = shown();"
             "const fold = page().getElementById('fold'); fold.click(); await until(() => "
             "    fold.textContent === 'Open all'); r.open = page().querySelectorAll("
             "    '.case > [open]').length; fold.click(); r.closed = page().querySelectorAll("
             "    '.case > details:not([open])').length; return r;");
    EXPECT_EQ("search", seen["slash"].toString());
    EXPECT_EQ("suite_shop / tst_login", seen["login"].toString());
    EXPECT_EQ(5, seen["all"].toString().count(',') + 1);
    EXPECT_EQ(0, seen["open"].toInt(-1));
    EXPECT_EQ(0, seen["closed"].toInt(-1));
}

TEST_F(Page, OfALongRunUnfoldsAndSearchesWhatItKeepsPacked)
{
    const QByteArray stream = streamOf([](ResultStreamWriter& writer) {
        for (int i = 0; i < 300; ++i) {
            CaseSummary testCase;
            testCase.suite = QStringLiteral("suite_shop");
            testCase.name = QStringLiteral("tst_%1").arg(i);
            writer.caseStarted(testCase, 1);
            for (int j = 0; j < 100; ++j) {
                ResultEntry entry;
                entry.type = ResultType::Pass;
                entry.message =
                    QStringLiteral("step <%1> of %2 & more").arg(QString::number(j), testCase.name);
                writer.entry(entry);
            }
            writer.caseEnded(CaseOutcome::Passed, 1);
        }
    });
    const QJsonObject seen =
        look(1000, "",
             "const r = {}, last = page().getElementById('suite_shop/tst_299');"
             "r.packed = page().querySelectorAll('[data-packed]').length;"
             "r.before = last.querySelectorAll('li').length;"
             "search('step <99> of tst_298 & m'); await until(() => shown() !== '');"
             "r.found = shown(); search('class='); r.markup = shown(); search('');"
             "last.querySelector('details').open = true; await until(() => last.querySelector('li'));"
             "r.steps = last.querySelectorAll('.pass').length; return r;",
             stream);
    EXPECT_GT(seen["packed"].toInt(), 100);
    EXPECT_EQ(0, seen["before"].toInt(-1));
    EXPECT_EQ("suite_shop / tst_298", seen["found"].toString().toStdString());
    EXPECT_EQ("", seen["markup"].toString("?").toStdString());
    EXPECT_EQ(100, seen["steps"].toInt());
}

TEST_F(Page, FitsAPhone)
{
    const QJsonObject seen = look(360, "",
                                  "for (const e of page().querySelectorAll('details')) e.open = true;"
                                  "const out = Array.from(page().querySelectorAll('body *'))"
                                  "    .filter(e => e.getBoundingClientRect().right > 360)"
                                  "    .map(e => e.tagName + ' ' + e.textContent.slice(0, 40));"
                                  "const low = Array.from(page().querySelectorAll('.counts button'))"
                                  "    .filter(e => e.offsetHeight < 40).length;"
                                  "return { width: window_().innerWidth, out: out.join('; '), low,"
                                  "    page: page().documentElement.scrollWidth };");
    EXPECT_EQ(360, seen["width"].toInt());
    EXPECT_EQ(360, seen["page"].toInt());
    EXPECT_EQ("", seen["out"].toString("?").toStdString());
    EXPECT_EQ(0, seen["low"].toInt(-1));
}

} // namespace
