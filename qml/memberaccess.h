#ifndef MEMBERACCESS_H
#define MEMBERACCESS_H

// Opens private data members, for what looks into the library's state without a name in its headers: an explicit instantiation may name
// one, and hands the pointer to it out through a friend function. All of it belongs to the file that includes this.
namespace
{

template<typename Tag, typename Tag::Member pointer>
struct MemberAccess
{
    friend constexpr typename Tag::Member memberOf(Tag) { return pointer; }
};

} // namespace

/// In an unnamed namespace. The member is then `object.*memberOf(NAME_Member())`.
#define OPEN_MEMBER(Class, name, type)                   \
    struct name##_Member                                 \
    {                                                    \
        using Member = type Class::*;                    \
        friend constexpr Member memberOf(name##_Member); \
    };                                                   \
    template struct MemberAccess<name##_Member, &Class::name>;

#endif
