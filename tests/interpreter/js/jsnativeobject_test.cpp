#include "interpreter/js/bridge/jsnativeobject.h"

#include "interpreter/base/nativescriptobject.h"
#include "interpreter/js/scripttest.h"

namespace Torvix {
namespace {

int accountKey;
int savingsKey;
int staticKey;
int strangerKey;

/** A native object that counts its like. */
class Account : public NativeScriptObject
{
public:
    explicit Account(int money, void* key = &accountKey) : balance(money), m_key(key) { ++alive; }
    ~Account() override { --alive; }
    void* type() const override { return m_key; }

    int balance;
    static int alive;

private:
    void* m_key;
};
int Account::alive = 0;

Account& account(const SharedPtr<NativeScriptObject>& object)
{
    return static_cast<Account&>(*object);
}

SharedPtr<NativeScriptObject> makeAccount(ScriptContext* context)
{
    if (context->argumentCount() == 0)
        return nullptr;
    const QString text = context->argument(0)->toString();
    if (text == "skip") {
        context->setError("not today", ScriptContext::TestCaseSkipped);
        return nullptr;
    }
    if (text == "savings")
        return new Account(0, &savingsKey);
    return new Account(context->argument(0)->toInteger());
}

SharedPtr<NativeScriptObject> makeSavings(ScriptContext* context)
{
    return new Account(context->argument(0)->toInteger(), &savingsKey);
}

bool deposit(ScriptContext* context, SharedPtr<NativeScriptObject> object)
{
    account(object).balance += context->argument(0)->toInteger();
    context->setResult(context->toArgument(object));
    return true;
}

bool interest(ScriptContext* context, SharedPtr<NativeScriptObject> object)
{
    context->setResult(context->toArgument(account(object).balance / 10));
    return true;
}

bool balance(ScriptContext* context, SharedPtr<NativeScriptObject> object)
{
    context->setResult(context->toArgument(account(object).balance));
    return true;
}

bool setBalance(ScriptContext* context, SharedPtr<NativeScriptObject> object)
{
    if (!context->argument(0)->isInteger()) {
        context->setError("no money: " + context->argument(0)->typeName(),
                          ScriptContext::VerificationFailure);
        return false;
    }
    account(object).balance = context->argument(0)->toInteger();
    return true;
}

bool kindOf(ScriptContext* context)
{
    const SharedPtr<ScriptArgument> value = context->argument(0);
    QString kind;
    if (value->isNative(&accountKey))
        kind += "account" + QString::number(account(value->toNative(&accountKey)).balance);
    if (value->isNative(&savingsKey))
        kind += "savings";
    if (!value->isNative(&accountKey) && !value->toNative(&accountKey))
        kind += "none";
    context->setResult(context->toArgument(kind));
    return true;
}

bool makeStranger(ScriptContext* context)
{
    context->setResult(context->toArgument(SharedPtr<NativeScriptObject>(new Account(1, &strangerKey))));
    return true;
}

bool silent(ScriptContext*)
{
    return true;
}

class JsNativeTest : public ScriptTest
{
protected:
    void SetUp() override
    {
        NativeScriptType type(makeAccount);
        type.addMethod("deposit",
                       {deposit, {"amount"}, {"currency"}, "Adds money.\n\nAnd gives the account."});
        type.addProperty("balance", {balance, setBalance});
        type.addProperty("interest", {interest, nullptr});
        type.addStaticMethod("kindOf", {kindOf, {}, {"value", "more"}, QString()});
        type.addStaticProperty("silence", {silent, nullptr});
        EXPECT_TRUE(interpreter->addType("Account", &accountKey, type));

        NativeScriptType savings(makeSavings, &accountKey);
        savings.addProperty("rate", {interest, nullptr});
        interpreter->addType("Savings", &savingsKey, savings);
        interpreter->addType("Static", &staticKey, NativeScriptType());
        interpreter->addGlobalFunction("kindOf", kindOf, {"value", "how"}, {"deep"}, QString());
        interpreter->addGlobalFunction("makeStranger", makeStranger, {}, {}, "One line");
        NativeScriptNamespace bank;
        bank.addFunction("kindOf", {kindOf, {"value"}, {}, QString()});
        interpreter->addNamespace("Bank", bank);
    }
};

TEST_F(JsNativeTest, TypesAreOrdinaryClassesForScripts)
{
    run("var a = new Account(5), b = Account(7), s = new Savings(100);");
    EXPECT_EQ(text("[a.balance, b.balance, s.balance, s.rate, a.interest].join()"), "5,7,100,10,0");
    EXPECT_EQ(text("[a instanceof Account, s instanceof Savings, s instanceof Account, a instanceof Savings,"
                   "({}) instanceof Account].join()"),
              "true,true,true,false,false");
    EXPECT_EQ(text("a.balance = 20; a.deposit(3).deposit(4).balance"), "27");
    EXPECT_EQ(text("s.deposit(1).balance"), "101");
    EXPECT_EQ(text("[a.constructor === Account, Account.prototype.constructor === Account,"
                   "Object.getPrototypeOf(a) === Account.prototype].join()"),
              "true,true,true");
    EXPECT_EQ(text("var t = []; for (var x of [a, s, {}, 5, null, Account]) t.push(kindOf(x)); t.join()"),
              "account27,account101savings,none,none,none,none");
    EXPECT_EQ(text("Account.kindOf(a) + Bank.kindOf(s) + String(Account.silence)"),
              "account27account101savingsundefined");
    EXPECT_EQ(text("a.own = 'mine'; a.own + ('deposit' in a) + ('nosuch' in a)"), "minetruefalse");
}

TEST_F(JsNativeTest, FailuresInTheirWords)
{
    run("var a = new Account(5);");
    const std::pair<const char*, const char*> cases[] = {
        {"new Account()", "Error: Constructor returned a null object"},
        {"new Account('savings')", "Error: Constructor returned an incompatible object type"},
        {"Account('skip')", "Error: not today"},
        {"a.balance = 'much'", "Error: no money: String"},
        {"a.deposit.call({}, 1)", "Error: Wrong this object, expected Account"},
        {"Account.prototype.balance", "Error: Wrong this object, expected Account"},
        {"Object.getOwnPropertyDescriptor(Savings.prototype, 'rate').get.call(a)",
         "Error: Wrong this object, expected Savings"},
        {"makeStranger()", "Error: Unregistrered native type passed to the interpreter"},
    };
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(thrown(code), expected) << code;
    EXPECT_TRUE(thrown("new Static").startsWith("TypeError: "));
    EXPECT_TRUE(thrown("Static()").startsWith("TypeError: ")) << "no constructor, no call";
    EXPECT_EQ(text("a.balance"), "5");

    run("function fails() { a.balance = 'much'; } function skips() { Account('skip'); }");
    EXPECT_TRUE(interpreter->call("fails", {})) << "a test outcome";
    EXPECT_TRUE(interpreter->call("skips", {}));
}

TEST_F(JsNativeTest, FunctionsShowTheirHelpAndArguments)
{
    run("var a = new Account(5);");
    EXPECT_EQ(text("String(a.deposit)"), "\n/**\n * Adds money.\n * And gives the account.\n**/"
                                         "\nfunction deposit(amount[,currency]) {\n    [native code]\n}\n");
    EXPECT_EQ(text("String(Account.kindOf)"), "\nfunction kindOf([value][,more]) {\n    [native code]\n}\n");
    EXPECT_EQ(text("String(kindOf)"), "\nfunction kindOf(value,how[,deep]) {\n    [native code]\n}\n");
    EXPECT_EQ(text("String(makeStranger)"), "\n/**\n * One line\n**/\nfunction makeStranger() {\n"
                                            "    [native code]\n}\n");
    EXPECT_EQ(text("kindOf.toString.call({})"), "[object Object]");
    EXPECT_EQ(text("kindOf.toString.call(Object.create(null))"), "[Object]");
    EXPECT_EQ(text("kindOf.toString.call([1, 2])"), "1,2");
    EXPECT_EQ(thrown("String(Object.create(kindOf))").left(10), "TypeError:")
        << "the next toString is that of functions, which this is none";
    EXPECT_EQ(text("[typeof kindOf, kindOf.name, typeof kindOf.call, String(Bank)].join()"),
              "function,kindOf,function,[object Bank]");
}

TEST_F(JsNativeTest, TypesSurviveWhatScriptsDoToTheirNames)
{
    EXPECT_EQ(text("var a = new Account(5); Account = 1; delete Account.prototype; typeof Account"),
              "function");
    EXPECT_EQ(text("delete globalThis.Account; typeof Account"), "undefined");
    run("var s = new Savings(3)");
    EXPECT_EQ(text("a.deposit(1).balance + s.deposit(2).balance"), "11");
    EXPECT_EQ(text("Object.setPrototypeOf(a, null); kindOf(a)"), "account6");
}

TEST_F(JsNativeTest, WrappersKeepTheirObjectsUntilTheInterpreterEnds)
{
    run("var a = new Account(1), list = [new Savings(2)]; a.self = a; function f() { return a; }"
        "for (var i = 0; i < 100; ++i) new Account(i);");
    EXPECT_GE(Account::alive, 2);
    const SharedPtr<NativeScriptObject> kept = interpreter->lastResult()->toNative(&accountKey);
    EXPECT_TRUE(bool(kept));
    interpreter.reset();
    EXPECT_EQ(Account::alive, 1);
    EXPECT_EQ(account(kept).balance, 99);
}

} // namespace
} // namespace Torvix
