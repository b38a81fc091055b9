#pragma once

#include <string>

#include <tinyxml.h>

namespace Torvix {

// One value of one expression; see xpath_processor. The first group gives the conversion of an invalid
// result (0, false, empty or null) after a failure.

int i_xpath_int(const TiXmlNode* base, const char* expression);
double d_xpath_double(const TiXmlNode* base, const char* expression);
bool o_xpath_bool(const TiXmlNode* base, const char* expression);
std::string S_xpath_string(const TiXmlNode* base, const char* expression);
/** The first entry of the node set; null if there is none, or if it is an attribute. */
const TiXmlNode* XNp_xpath_node(const TiXmlNode* base, const char* expression);
/** The first entry of the node set; null if there is none, or if it is a node. */
const TiXmlAttribute* XAp_xpath_attribute(const TiXmlNode* base, const char* expression);

// The same, with whether the evaluation had no error. The value is set in either case.

bool o_xpath_int(const TiXmlNode* base, const char* expression, int& i_value);
bool o_xpath_double(const TiXmlNode* base, const char* expression, double& d_value);
bool o_xpath_bool(const TiXmlNode* base, const char* expression, bool& o_value);
bool o_xpath_string(const TiXmlNode* base, const char* expression, std::string& S_value);
bool o_xpath_node(const TiXmlNode* base, const char* expression, const TiXmlNode*& XNp_value);
bool o_xpath_attribute(const TiXmlNode* base, const char* expression, const TiXmlAttribute*& XAp_value);

} // namespace Torvix
