#pragma once

#include "report/reporters.h"
#include "report/streamwriter.h"
#include "support/runreport.h"

#include <functional>

/** A run with one case of every outcome, hard texts included, at fixed times: what baselines show. */
inline QByteArray sampleStream()
{
    using namespace Torvix;
    const QByteArray stream = R"ndjson(
{"event":"run-started","schema":1,"time":"2026-03-01T10:00:00.000Z","name":"suite_shop","plannedCases":6,"environment":{"host":"lab-3","os":"Debian 12","qt":"5.15.8"}}
{"event":"case-started","time":"2026-03-01T10:00:00.010Z","suite":"suite_shop","name":"tst_login","path":"/tests/suite_shop/tst_login","tags":["smoke"],"attempt":1}
{"event":"result","time":"2026-03-01T10:00:00.100Z","type":"log","message":"Signing in as \"Żółć & Söhne\" <admin>"}
{"event":"result","time":"2026-03-01T10:00:00.200Z","type":"pass","message":"Comparison","detail":"'3' and '3' are equal","file":"/tests/suite_shop/tst_login/test.js","line":4,"sections":["Sign in","Check"]}
{"event":"application-ended","time":"2026-03-01T10:00:00.900Z","name":"shop","pid":4711,"ending":"exited with 0","output":"ready\n"}
{"event":"case-ended","time":"2026-03-01T10:00:01.010Z","outcome":"passed","durationMs":1000}
{"event":"case-started","time":"2026-03-01T10:00:01.100Z","suite":"suite_shop","name":"tst_basket # 50%","path":"/tests/suite_shop/tst_basket","tags":[],"attempt":1}
{"event":"result","time":"2026-03-01T10:00:01.500Z","type":"fail","message":"Comparison","detail":"The texts are not equal (- expected, + seen)","difference":"- 3 items\n+ 2 items","file":"/tests/suite_shop/tst_basket/test.js","line":3,"source":{"firstLine":2,"lines":["    add('pear');","    test.compare(count(), \"3 items\");","}"]},"attachments":[{"path":"tst_basket/shot 1.png","mimeType":"image/png","description":"The window at the failure"}]}
{"event":"result","time":"2026-03-01T10:00:01.600Z","type":"unexpected-pass","message":"100% of %1 ]]> \u0001 done","file":"/elsewhere/shared.js","line":9}
{"event":"object-tree","time":"2026-03-01T10:00:01.700Z","text":"MainWindow\n  QPushButton 'Buy <now>'\n"}
{"event":"application-ended","time":"2026-03-01T10:00:01.800Z","name":"shop","pid":4712,"ending":"killed by signal 11","output":""}
{"event":"case-ended","time":"2026-03-01T10:00:01.900Z","outcome":"failed","durationMs":800}
{"event":"case-started","time":"2026-03-01T10:00:02.000Z","suite":"suite_shop","name":"tst_retry","path":"/tests/suite_shop/tst_retry","tags":[],"attempt":1}
{"event":"result","time":"2026-03-01T10:00:02.100Z","type":"error","message":"Object 'Buy' not found","file":"/tests/suite_shop/tst_retry/test.js","line":12}
{"event":"case-ended","time":"2026-03-01T10:00:02.200Z","outcome":"error","durationMs":200}
{"event":"case-started","time":"2026-03-01T10:00:02.300Z","suite":"suite_shop","name":"tst_retry","path":"/tests/suite_shop/tst_retry","tags":[],"attempt":2}
{"event":"result","time":"2026-03-01T10:00:02.400Z","type":"expected-fail","message":"Known fault"}
{"event":"result","time":"2026-03-01T10:00:02.400Z","type":"warning","message":"Slow","file":"/tests/suite_shop/tst_retry/test.js","line":2}
{"event":"case-ended","time":"2026-03-01T10:00:02.500Z","outcome":"passed","durationMs":200}
{"event":"case-started","time":"2026-03-01T10:00:03.000Z","suite":"suite_mail","name":"tst_later","path":"/tests/suite_mail/tst_later","tags":[],"attempt":1}
{"event":"result","time":"2026-03-01T10:00:03.100Z","type":"skip","message":"Needs a printer"}
{"event":"case-ended","time":"2026-03-01T10:00:03.200Z","outcome":"skipped","durationMs":61000}
{"event":"case-started","time":"2026-03-01T10:01:05.000Z","suite":"suite_mail","name":"tst_cut","path":"/tests/suite_mail/tst_cut","tags":[],"attempt":1}
{"event":"run-ended","time":"2026-03-01T10:01:06.000Z","interrupted":true,"durationMs":66000}
)ndjson";
    return stream.mid(1);
}

/** The stream of a run, between its start and its end. */
inline QByteArray streamOf(const std::function<void(Torvix::ResultStreamWriter&)>& write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Torvix::ResultStreamWriter writer(&buffer);
    writer.runStarted(QStringLiteral("run"), 0, {});
    write(writer);
    writer.runEnded(false, 1);
    return buffer.data();
}

inline QByteArray rendered(const char* reporter, const Torvix::RecordedRun& run,
                           const Torvix::ReporterOptions& options = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Torvix::reporterByName(QLatin1String(reporter))->write(run, options, &buffer);
    return buffer.data();
}
