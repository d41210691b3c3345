// The library's own objects, classes and modules.

#include <sstream>

#include "base/module/module.h"
#include "base/module/symbol_table.h"
#include "base/object/base_node.h"
#include "benchmarks/contest.h"
#include "benchmarks/object_samples.h"
#include "benchmarks/texts.h"

namespace Oxa_1_1::bench
{

namespace
{

class Node : public BaseNode
{
   public:
    const uZClass* getClassType() const override { return classAtDepth(CLASS_DEPTH); }
};

void addOwners()
{
    const SmartPtr<Node> shared = makeNode<Node>();
    const auto copyAndDrop = [shared]
    {
        SmartPtr<Node> copy = shared;
        keep(copy);
    };
    add(work::OWN, OURS, copyAndDrop);
    addThreads(work::OWN_SHARED, OURS, copyAndDrop);
    add(work::CREATE, OURS, [] { keep(makeNode<Node>()); });
    add(work::WATCH, OURS,
        [shared, watched = shared->getWeakHandle()]
        {
            const std::shared_ptr<WeakHandle> handle = watched.lock();
            keep(handle->lock());
        });
}

void addClasses()
{
    const SmartPtr<Node> node = makeNode<Node>();
    const uZClass* const root = classAtDepth(0);
    const uZClass* const stranger = BaseNode::Class();
    add(work::KIND_HIT, OURS, [node, root] { keep(node->isKindOf(root)); });
    add(work::KIND_MISS, OURS, [node, stranger] { keep(node->isKindOf(stranger)); });
}

void addTexts()
{
    add(work::TEXT_BY_ID, OURS, [id = 0U]() mutable { keep(String::loadFromResource(nextId(id), textsModule())); });
    add(work::TEXT_IN_LANGUAGE, OURS,
        [id = 0U]() mutable { keep(String::loadFromResource(nextId(id), translatedModule())); });
}

void addSymbols()
{
    const std::string header = sampleHeader();
    add(
        work::PARSE_HEADER, OURS,
        [header]
        {
            std::istringstream in(header);
            SymbolTable table;
            table.parseHeaderFile(in);
            keep(table);
        },
        static_cast<double>(header.size()) / 1e3);

    SymbolTable table;
    std::istringstream in(header);
    table.parseHeaderFile(in);
    const std::vector<String> names = shuffledNames<String>();
    add(work::LOOK_UP_SYMBOL, OURS,
        [table, names, i = std::size_t{0}]() mutable { keep(table.lookupSymbol(names[i++ % names.size()])); });
}

}  // namespace

void addObjects()
{
    addOwners();
    addClasses();
    addTexts();
    addSymbols();
}

}  // namespace Oxa_1_1::bench
