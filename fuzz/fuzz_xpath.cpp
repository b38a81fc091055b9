// XPath expressions over a small document: a result has no node twice, its kind agrees with its error,
// and a second evaluation gives the same.

#include "xpath/xpathprocessor.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>

using namespace Torvix;

namespace {

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

const TiXmlDocument& shop()
{
    static const TiXmlDocument* const document = [] {
        auto* parsed = new TiXmlDocument;
        parsed->Parse(
            "<?xml version='1.0'?><shop id='r'><!--first--><item id='i1' kind='tea' price='2.5'>Green"
            "<b id='b1'>bold</b>tail</item><box id='x1'><item id='i2' kind='cup' price='10'/>"
            "<item id='i3' kind='pot' price='7'><part id='p1'>lid</part><part id='p2'>can</part></item>"
            "<note id='o1'>a b</note></box><item id='i4' kind='tea' price='4'><!--second--></item>"
            "<text id='t1'>T</text><x:y x:z='1'/></shop>");
        return parsed;
    }();
    return *document;
}

void evaluate(const TiXmlNode* base, const std::string& expression)
{
    xpath_processor processor(base, expression.c_str());
    const expression_result result = processor.er_compute_xpath();
    require((processor.e_get_error() == xpath_processor::e_no_error) == (result.e_get_type() != e_invalid),
            "error and kind");
    node_set set = result.ns_get_node_set();
    std::set<const TiXmlBase*> members;
    for (unsigned i = 0; i < set.u_get_nb_node_in_set(); i++)
        require(members.insert(set.XBp_get_base(i)).second, "node twice");
    const std::string text = result.S_get_string();
    result.i_get_int();
    result.d_get_double();
    set.v_document_sort(&shop());
    require(set.o_is_empty() || base->Parent() != &shop() || set.S_get_value(0) == text,
            "first in the document");

    xpath_processor again(base, expression.c_str());
    const std::string same = again.S_compute_xpath();
    require(same == text, "second evaluation");
    require(again.u_compute_xpath_node_set() == set.u_get_nb_node_in_set(), "second node set");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string expression(reinterpret_cast<const char*>(data), size);
    const TiXmlElement* root = shop().RootElement();
    evaluate(root, expression);
    evaluate(root->FirstChildElement("box")->FirstChild(), expression);
    evaluate(root->FirstChild(), expression);
    return 0;
}
