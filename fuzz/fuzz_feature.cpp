// Feature files: every place is inside the text, ids are unique and below the count, and pickles refer to
// nodes that are there.

#include "gherkin/messages.h"
#include "gherkin/pickle.h"

#include <QSet>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace Gherkin;

namespace {

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

void checkPickles(const Feature& feature)
{
    const QVector<Pickle> pickles = compilePickles(feature);
    for (int i = 0; i < pickles.size(); ++i) {
        for (const int node : pickles[i].nodes)
            require(node >= 0 && node < feature.idCount, "a pickle's node is in the tree");
        for (const Step& step : pickles[i].steps) {
            require(step.textOffset <= step.lineText.size(), "the text starts in the line");
            require(!step.nodes.isEmpty() && step.nodes.first() < feature.idCount, "a step has a node");
        }
        pickleMessage(pickles[i], i, feature.language, QStringLiteral("f"), QString());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const int lines = text.count(QLatin1Char('\n')) + 1;
    Feature feature;
    QVector<ParseError> errors;
    const bool ok = parseFeature(text, feature, errors);
    require(ok == errors.isEmpty(), "errors agree with the answer");
    for (const ParseError& error : errors)
        require(error.location.line >= 1 && error.location.line <= lines && error.location.column >= 1,
                "an error is in the text");
    if (ok && feature.scenarios.size() < 100)
        checkPickles(feature);
    gherkinDocumentMessage(feature, QStringLiteral("f"), QString());
    return 0;
}
