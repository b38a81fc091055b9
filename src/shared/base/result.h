#pragma once

#include <QString>

#include <type_traits>
#include <utility>

namespace Torvix {

/** Why an operation failed, in words for people. What code decides by stands in members of its own. */
struct Failure
{
    QString text;
};

template <class T, class Error = Failure>
class Result;

namespace Detail {

/** What Result::then() gives for a next step that returns T. */
template <class T, class Error>
struct Joined
{
    using Type = Result<T, Error>;
};
template <class T, class Error>
struct Joined<Result<T, Error>, Error>
{
    using Type = Result<T, Error>;
};

/** Whether a T stands for something that is reached by its own arrow. */
template <class T, class = void>
struct IsSmartPointer : std::false_type
{
};
template <class T>
struct IsSmartPointer<T, std::void_t<decltype(std::declval<const T&>().operator->())>> : std::true_type
{
};

} // namespace Detail

/**
 * What an operation gave, or why it failed.
 *
 *     const Result<SharedPtr<Object>> found = inspector->findObject(name);
 *     if (!found)
 *         return found.failure();
 *     found->toString();
 *
 * The compiler warns where a result is thrown away: use orNothing() where a failure does not matter.
 */
template <class T, class Error>
class [[nodiscard]] Result
{
public:
    Result(T value) : m_value(std::move(value)) {}
    Result(Error failure) : m_failure(std::move(failure)), m_isDone(false) {}

    /** Whether there is a value; also of a value that is null or false. */
    explicit operator bool() const { return m_isDone; }

    const T& operator*() const { return m_value; }
    /** The members of the value; of what it points to when it is a smart pointer. */
    std::conditional_t<Detail::IsSmartPointer<T>::value, const T&, const T*> operator->() const
    {
        if constexpr (Detail::IsSmartPointer<T>::value)
            return m_value;
        else
            return &m_value;
    }
    /** The value; an empty one (null, 0, false) after a failure. */
    const T& orNothing() const& { return m_value; }
    T orNothing() && { return std::move(m_value); }

    const Error& failure() const { return m_failure; }
    /** Null without a failure. */
    QString error() const { return m_failure.text; }

    /** The value given to the next step, which returns a value or a Result; a failure is handed on. */
    template <class Next>
    auto then(Next&& next) const -> typename Detail::Joined<std::invoke_result_t<Next, const T&>, Error>::Type
    {
        if (!m_isDone)
            return m_failure;
        return next(m_value);
    }

private:
    T m_value{};
    Error m_failure;
    bool m_isDone = true;
};

/** Of an operation that gives nothing: only whether it worked, and else why not. */
template <class Error>
class [[nodiscard]] Result<void, Error>
{
public:
    Result() = default;
    Result(Error failure) : m_failure(std::move(failure)), m_isDone(false) {}
    /** The value is not wanted. */
    template <class T>
    Result(const Result<T, Error>& other) : m_failure(other.failure())
                                          , m_isDone(bool(other))
    {
    }

    explicit operator bool() const { return m_isDone; }
    void orNothing() const {}

    const Error& failure() const { return m_failure; }
    QString error() const { return m_failure.text; }

private:
    Error m_failure;
    bool m_isDone = true;
};

} // namespace Torvix
