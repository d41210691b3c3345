// The least work for the same results: a counter within the object, a walk of pointers, a table of texts.

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <utility>

#include "base/string/oxa_string.h"
#include "benchmarks/contest.h"
#include "benchmarks/object_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

/// An object that counts its owners, without watchers.
class Counted
{
   public:
    virtual ~Counted() = default;
    virtual const uZClass* getClassType() const { return classAtDepth(CLASS_DEPTH); }

    void ref() { m_count.fetch_add(1); }
    void unref()
    {
        if (m_count.fetch_sub(1) == 1) delete this;
    }

   private:
    std::atomic<unsigned> m_count = 0;
};

class Owner
{
   public:
    explicit Owner(Counted* object) : m_object(object) { m_object->ref(); }
    Owner(const Owner& other) : Owner(other.m_object) {}
    Owner& operator=(const Owner&) = delete;
    ~Owner() { m_object->unref(); }

   private:
    Counted* m_object;
};

/// What watchers share: the object, and a mutex for it.
struct Handle
{
    explicit Handle(Counted* watched) : object(watched) {}

    Owner lock()
    {
        const std::lock_guard guard(mutex);
        return Owner(object);
    }

    Counted* object;
    std::mutex mutex;
};

class Watched : public Counted
{
   public:
    Watched() : m_handle(std::make_shared<Handle>(this)) {}
    ~Watched() override { const std::lock_guard guard(m_handle->mutex); }
    std::weak_ptr<Handle> handle() const { return m_handle; }

   private:
    std::shared_ptr<Handle> m_handle;
};

bool isDerivedFrom(const uZClass* c, const uZClass* other)
{
    for (; c != nullptr; c = c->base)
        if (c == other) return true;
    return false;
}

void addOwners()
{
    const Owner shared(new Counted);
    const auto copyAndDrop = [shared]
    {
        Owner copy = shared;
        keep(copy);
    };
    add(work::OWN, FLOOR, copyAndDrop);
    addThreads(work::OWN_SHARED, FLOOR, copyAndDrop);
    add(work::CREATE, FLOOR, [] { keep(Owner(new Watched)); });
    auto* const watched = new Watched;
    add(work::WATCH, FLOOR,
        [owner = Owner(watched), weak = watched->handle()]
        {
            const std::shared_ptr<Handle> handle = weak.lock();
            keep(handle->lock());
        });
}

/// A header by the means of the standard library, into two maps.
void parseHeader(const std::string& header)
{
    std::map<String, unsigned, StringLess2> byName;
    std::multimap<unsigned, String> byValue;
    std::istringstream in(header);
    for (std::string line; std::getline(in, line);)
    {
        std::istringstream words(line);
        std::string define;
        std::string name;
        unsigned value = 0;
        if (!(words >> define >> name >> value) || define != "#define") continue;
        byName.emplace(name, value);
        byValue.emplace(value, name);
    }
    keep(byName);
    keep(byValue);
}

}  // namespace

void addObjectFloors()
{
    addOwners();
    add(
        work::PARSE_HEADER, "std::map", [header = sampleHeader()] { parseHeader(header); },
        static_cast<double>(sampleHeader().size()) / 1e3);
    const auto object = std::make_shared<Counted>();
    const uZClass* const root = classAtDepth(0);
    const uZClass* const stranger = reinterpret_cast<const uZClass*>(&stranger);
    add(work::KIND_HIT, FLOOR, [object, root] { keep(isDerivedFrom(object->getClassType(), root)); });
    add(work::KIND_MISS, FLOOR, [object, stranger] { keep(isDerivedFrom(object->getClassType(), stranger)); });

    std::vector<Text> texts;
    for (int i = 0; i <= 2000; ++i)
        texts.push_back(Text(String("Message number ").view()) + Text(String(std::to_string(i)).view()));
    for (const std::string& name : {work::TEXT_BY_ID, work::TEXT_IN_LANGUAGE})
        add(name, FLOOR, [texts, id = 0U]() mutable { keep(String(texts[nextId(id)])); });

    std::map<String, unsigned, StringLess2> symbols;
    for (unsigned i = 0; i < SYMBOLS; ++i) symbols.emplace(symbolName(i).c_str(), i);
    const std::vector<String> names = shuffledNames<String>();
    add(work::LOOK_UP_SYMBOL, "std::map",
        [symbols, names, i = std::size_t{0}]() mutable { keep(symbols.find(names[i++ % names.size()])); });
}

}  // namespace Oxa_1_1::bench
