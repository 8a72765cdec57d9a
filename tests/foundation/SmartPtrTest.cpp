#include "common/TestUtils.h"

#include <functional>
#include <utility>

using QvXmlLib16::CSmartPtr;

namespace {

struct Tracker {
    int created = 0;
    int deleted = 0;
};

// Counts like the library's bindable objects: starts at 0, deletes itself at 0.
class Counted {
public:
    explicit Counted(Tracker& tracker) : m_tracker(tracker) { ++m_tracker.created; }

    virtual ~Counted() { ++m_tracker.deleted; }

    void AddRef() { ++m_refs; }

    void Release() {
        if (--m_refs == 0)
            delete this;
    }

    int Refs() const { return m_refs; }

    CSmartPtr<Counted> child;

private:
    Tracker& m_tracker;
    int m_refs = 0;
};

class Derived : public Counted {
public:
    using Counted::Counted;
    int extra = 7;
};

struct Seen {
    int refs;
    int deleted;
};

bool operator==(const Seen& a, const Seen& b) {
    return a.refs == b.refs && a.deleted == b.deleted;
}

std::ostream& operator<<(std::ostream& os, const Seen& s) {
    return os << "{refs " << s.refs << ", deleted " << s.deleted << "}";
}

} // namespace

TEST(SmartPtr, CountsReferences) {
    struct Case {
        const char* name;
        // Returns the reference count of the object of interest and the deletions so far.
        std::function<Seen(Tracker&)> run;
        Seen expected;
    };

    const Case cases[] = {
        {"copy adds a reference",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             CSmartPtr<Counted> q(p);
             EXPECT_EQ(q.Ptr(), p.Ptr());
             return Seen{p->Refs(), t.deleted};
         },
         {2, 0}},
        {"move transfers the reference",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             CSmartPtr<Counted> q(std::move(p));
             EXPECT_TRUE(p.IsNull());
             return Seen{q->Refs(), t.deleted};
         },
         {1, 0}},
        {"copy assignment releases the old object",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             CSmartPtr<Counted> q(new Counted(t));
             q = p;
             return Seen{p->Refs(), t.deleted};
         },
         {2, 1}},
        {"move assignment releases the old object",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             CSmartPtr<Counted> q(new Counted(t));
             q = std::move(p);
             EXPECT_TRUE(p.IsNull());
             return Seen{q->Refs(), t.deleted};
         },
         {1, 1}},
        {"null assignment releases",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             p = nullptr;
             EXPECT_TRUE(p.IsNull());
             EXPECT_EQ(static_cast<Counted*>(p), nullptr);
             return Seen{0, t.deleted};
         },
         {0, 1}},
        {"self move assignment",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             CSmartPtr<Counted>& alias = p;
             p = std::move(alias);
             EXPECT_FALSE(p.IsNull());
             return Seen{p->Refs(), t.deleted};
         },
         {1, 0}},
        // Copy assignment goes through this one.
        {"assigning the pointer already held",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             p = p.Ptr();
             return Seen{p->Refs(), t.deleted};
         },
         {1, 0}},
        {"object kept alive only by the replaced reference",
         [](Tracker& t) {
             CSmartPtr<Counted> p(new Counted(t));
             p->child = new Counted(t);
             p = p->child.Ptr(); // the parent goes, taking its reference to the child
             return Seen{p->Refs(), t.deleted};
         },
         {1, 1}},
        {"converting copy from a derived pointer",
         [](Tracker& t) {
             CSmartPtr<Derived> d(new Derived(t));
             CSmartPtr<Counted> b(d);
             EXPECT_EQ(b.Ptr(), static_cast<Counted*>(d.Ptr()));
             EXPECT_EQ(d->extra, 7);
             return Seen{b->Refs(), t.deleted};
         },
         {2, 0}},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        Tracker tracker;
        EXPECT_EQ(tc.run(tracker), tc.expected);
        // Every pointer is gone: everything created was deleted exactly once.
        EXPECT_EQ(tracker.deleted, tracker.created);
    }
}
