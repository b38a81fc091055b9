#pragma once

#include "xpath/actionstore.h"
#include "xpath/expressionresult.h"
#include "xpath/siblings.h"
#include "xpath/xpathstack.h"
#include "xpath/xpathstream.h"

#include <memory>
#include <string>
#include <vector>

namespace Torvix {

/**
 * Evaluates one expression over one TinyXML tree:
 *
 *     xpath_processor processor(document.RootElement(), "//item[@id='x']");
 *     unsigned u_count = processor.u_compute_xpath_node_set();
 *     const TiXmlNode* XNp_first = processor.XNp_get_xpath_node(0); // null if there is none
 *
 * The language is XML Path Language (XPath) Version 1.0 with these intended departures:
 *
 * - Text is UTF-8, and lengths and positions count bytes. A name ends at a byte from 128 to 191.
 * - A name that is spelt like an operator, an axis or a node type is always that keyword.
 * - There are no namespaces: a name with a prefix is compared as text.
 * - Integers are a kind of their own, of 32 bits; see expression_result for the conversions. `div` gives
 *   a double, and fails for a divisor near 0, as `mod` does for 0.
 * - The root is the parent of the base, which makes "/" alone invalid and hides the root from `self`,
 *   `ancestor`, `ancestor-or-self` and `descendant-or-self`.
 * - `following` and `preceding` reach siblings and their children only.
 * - No step goes on from an attribute, and a predicate drops what is no element.
 * - The position of an element is its place among its siblings, those of its name if the step has a name
 *   and all otherwise. A second predicate does not renumber. last() counts all sibling elements.
 * - A node set has the order of the steps. Two node sets cannot be compared with each other.
 * - Comparisons with < and > are of integers unless a side is a double; so are those of a node set.
 * - boolean, id, lang, local-name, namespace-uri, number, round, string, substring-after and
 *   substring-before are not offered, nor are variables, the namespace axis and
 *   processing-instruction(). text() is a function as well where a blank follows its name.
 *
 * Nothing is thrown: a failure gives a result of the invalid kind. A processor evaluates once; each
 * further call gives the same result. The tree must stay as it is while the processor and its results
 * are in use. One thread uses a processor; different processors know nothing of each other.
 */
class xpath_processor : public xpath_stream
{
public:
    /** Why a result is invalid. */
    enum e_error {
        e_no_error = 0,
        e_error_syntax = 1,
        e_error_overflow = 2,
        e_error_execution = 3,
        e_error_stack = 4,
    };

    /** `base` is what relative paths begin with, an element below another node. Null gives an invalid result.
     */
    xpath_processor(const TiXmlNode* base, const char* expression);

    expression_result er_compute_xpath();
    std::string S_compute_xpath();
    int i_compute_xpath();
    double d_compute_xpath();
    bool o_compute_xpath();
    /** The size of the node set; 0 if the result is none. */
    unsigned u_compute_xpath_node_set();

    /** An entry of the node set of the evaluation; null behind the last. */
    void v_get_xpath_base(unsigned u_index, const TiXmlBase*& XBp_base, bool& o_is_attribute) const;
    /** That entry as a node; null if it is an attribute. */
    const TiXmlNode* XNp_get_xpath_node(unsigned u_index) const;
    /** That entry as an attribute; null if it is a node. */
    const TiXmlAttribute* XAp_get_xpath_attribute(unsigned u_index) const;

    e_error e_get_error() const { return e_error_state; }

protected:
    void v_action(xpath_construct xc_rule, unsigned u_sub, unsigned u_variable,
                  std::string_view S_literal) override;
    int i_get_action_counter() override;

private:
    /** Where the first step of a path starts. */
    enum e_start {
        e_start_everywhere = -1,
        e_start_context = -2,
        e_start_root = 0,
        e_start_stack = 1,
    };
    using arguments = std::vector<expression_result>;
    struct function;
    static const function functions[];

    const expression_result& er_evaluate();
    void v_run();

    void v_execute_one(xpath_construct xc_rule, bool o_skip);
    void v_execute_binary(const action_item& ai_operation);
    void v_execute_primary(const action_item& ai_value);
    void v_execute_minus();
    void v_execute_absolute_path(int i_action, bool o_with_relative, bool o_everywhere);
    void v_execute_relative_path(int i_path, e_start e_state);
    void v_execute_path_expr(const action_item& ai_path, bool o_skip);
    void v_execute_filter(const action_item& ai_filter, bool o_skip);
    void v_execute_step(int i_step, e_start e_state);
    node_set ns_start(e_start e_state);
    node_set ns_pop();
    node_set ns_elements_from(const node_set& ns_nodes) const;
    void v_apply_predicates(node_set& ns_nodes, int i_last, unsigned u_predicates, bool o_by_name);
    bool o_check_predicate(const TiXmlElement* XEp_element, int i_predicate, bool o_by_name);

    void v_execute_function(std::string_view S_name, unsigned u_arguments);
    const TiXmlElement* XEp_need_context() const;
    expression_result er_function_ceiling(arguments& args);
    expression_result er_function_concat(arguments& args);
    expression_result er_function_contains(arguments& args);
    expression_result er_function_count(arguments& args);
    expression_result er_function_false(arguments& args);
    expression_result er_function_floor(arguments& args);
    expression_result er_function_last(arguments& args);
    expression_result er_function_name(arguments& args);
    expression_result er_function_normalize_space(arguments& args);
    expression_result er_function_not(arguments& args);
    expression_result er_function_position(arguments& args);
    expression_result er_function_starts_with(arguments& args);
    expression_result er_function_string_length(arguments& args);
    expression_result er_function_substring(arguments& args);
    expression_result er_function_sum(arguments& args);
    expression_result er_function_text(arguments& args);
    expression_result er_function_translate(arguments& args);
    expression_result er_function_true(arguments& args);

    xpath_stack xs_stack;
    action_store as_action_store;
    expression_result er_result;
    e_error e_error_state = e_no_error;
    bool o_evaluated = false;
    const TiXmlNode* XNp_root = nullptr;
    const TiXmlNode* XNp_base = nullptr;
    const TiXmlElement* XEp_context = nullptr;
    bool o_context_by_name = false;
    sibling_index si_siblings;
    std::shared_ptr<document_order> do_order;
};

} // namespace Torvix
