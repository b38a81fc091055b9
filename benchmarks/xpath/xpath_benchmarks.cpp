// Expressions over documents of 1,000 to 100,000 elements, here and in libxml2. The complexity line of
// each group tells how the time grows; the rows of one size are to be compared with each other.
#include "xpath/xpathprocessor.h"

#include <benchmark/benchmark.h>

#include <string>

#ifdef TORVIX_HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/xpath.h>
#endif

namespace {

/** Shelves of ten elements each: four items, three pairs of a and b. */
std::string documentText(long elements)
{
    std::string text = "<root>";
    for (long i = 0; i < elements; i += 11) {
        text += "<shelf>";
        for (int item = 0; item < 4; item++)
            text += "<item id='i" + std::to_string(i + item) + "' kind='tea'>text</item>";
        text += "<a><b>1</b></a><a><b>2</b></a><a><b>3</b></a></shelf>";
    }
    // What the look-up finds is the last element of the document.
    return text + "<item id='x'/></root>";
}

void torvix(benchmark::State& state, const char* expression)
{
    TiXmlDocument document;
    document.Parse(documentText(state.range(0)).c_str());
    std::string found;
    for (auto _ : state) {
        Torvix::xpath_processor processor(document.RootElement(), expression);
        const unsigned u_nodes = processor.u_compute_xpath_node_set();
        found = u_nodes ? std::to_string(u_nodes) + " nodes" : processor.S_compute_xpath();
    }
    state.SetLabel("= " + found);
    state.SetComplexityN(state.range(0));
}

#ifdef TORVIX_HAVE_LIBXML2
void libxml2(benchmark::State& state, const char* expression)
{
    const std::string text = documentText(state.range(0));
    xmlDocPtr document = xmlReadMemory(text.data(), int(text.size()), nullptr, nullptr, 0);
    xmlXPathContextPtr context = xmlXPathNewContext(document);
    std::string found;
    for (auto _ : state) {
        xmlXPathObjectPtr result =
            xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(expression), context);
        found = result->type == XPATH_NODESET ? std::to_string(result->nodesetval->nodeNr) + " nodes"
                                              : std::to_string(int(result->floatval));
        xmlXPathFreeObject(result);
    }
    state.SetLabel("= " + found);
    state.SetComplexityN(state.range(0));
    xmlXPathFreeContext(context);
    xmlFreeDoc(document);
}
#endif

const char* const expressions[] = {
    "//item[@id='x']",
    "count(//a/b)",
    "//item[3]",
    "//b/ancestor::shelf",
    "count(//item/following-sibling::a)",
    "//a/b|//item",
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (const char* expression : expressions) {
        const auto sizes = [](benchmark::internal::Benchmark* group) {
            group->RangeMultiplier(10)
                ->Range(1000, 100000)
                ->Complexity(benchmark::oN)
                ->Unit(benchmark::kMicrosecond);
        };
        sizes(
            benchmark::RegisterBenchmark((std::string("torvix/") + expression).c_str(), torvix, expression));
#ifdef TORVIX_HAVE_LIBXML2
        sizes(benchmark::RegisterBenchmark((std::string("libxml2/") + expression).c_str(), libxml2,
                                           expression));
#endif
    }
    benchmark::RunSpecifiedBenchmarks();
}
