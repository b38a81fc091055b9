#include "xpath/xpathstatic.h"

#include "xpath/xpathprocessor.h"

namespace Torvix {

namespace {

/** Evaluates, sets `value` to what `read` makes of it, and tells whether there was no error. */
template <class Value, class Read>
bool o_evaluate(const TiXmlNode* base, const char* expression, Value& value, Read read)
{
    xpath_processor processor(base, expression);
    value = read(processor);
    return processor.e_get_error() == xpath_processor::e_no_error;
}

} // namespace

bool o_xpath_int(const TiXmlNode* base, const char* expression, int& i_value)
{
    return o_evaluate(base, expression, i_value, [](xpath_processor& p) { return p.i_compute_xpath(); });
}

bool o_xpath_double(const TiXmlNode* base, const char* expression, double& d_value)
{
    return o_evaluate(base, expression, d_value, [](xpath_processor& p) { return p.d_compute_xpath(); });
}

bool o_xpath_bool(const TiXmlNode* base, const char* expression, bool& o_value)
{
    return o_evaluate(base, expression, o_value, [](xpath_processor& p) { return p.o_compute_xpath(); });
}

bool o_xpath_string(const TiXmlNode* base, const char* expression, std::string& S_value)
{
    return o_evaluate(base, expression, S_value, [](xpath_processor& p) { return p.S_compute_xpath(); });
}

bool o_xpath_node(const TiXmlNode* base, const char* expression, const TiXmlNode*& XNp_value)
{
    return o_evaluate(base, expression, XNp_value, [](xpath_processor& p) {
        p.u_compute_xpath_node_set();
        return p.XNp_get_xpath_node(0);
    });
}

bool o_xpath_attribute(const TiXmlNode* base, const char* expression, const TiXmlAttribute*& XAp_value)
{
    return o_evaluate(base, expression, XAp_value, [](xpath_processor& p) {
        p.u_compute_xpath_node_set();
        return p.XAp_get_xpath_attribute(0);
    });
}

int i_xpath_int(const TiXmlNode* base, const char* expression)
{
    int i_value = 0;
    o_xpath_int(base, expression, i_value);
    return i_value;
}

double d_xpath_double(const TiXmlNode* base, const char* expression)
{
    double d_value = 0;
    o_xpath_double(base, expression, d_value);
    return d_value;
}

bool o_xpath_bool(const TiXmlNode* base, const char* expression)
{
    bool o_value = false;
    o_xpath_bool(base, expression, o_value);
    return o_value;
}

std::string S_xpath_string(const TiXmlNode* base, const char* expression)
{
    std::string S_value;
    o_xpath_string(base, expression, S_value);
    return S_value;
}

const TiXmlNode* XNp_xpath_node(const TiXmlNode* base, const char* expression)
{
    const TiXmlNode* XNp_value = nullptr;
    o_xpath_node(base, expression, XNp_value);
    return XNp_value;
}

const TiXmlAttribute* XAp_xpath_attribute(const TiXmlNode* base, const char* expression)
{
    const TiXmlAttribute* XAp_value = nullptr;
    o_xpath_attribute(base, expression, XAp_value);
    return XAp_value;
}

} // namespace Torvix
