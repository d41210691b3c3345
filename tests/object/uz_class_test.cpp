// The forest of classes.

#include "base/object/uz_class.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "base/module/class_record.h"
#include "base/module/module.h"
#include "base/object/base_node.h"
#include "base/object/creatable_class.h"
#include "base/object/info_string_map.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

const uZClass* recordWithoutTypes();

namespace
{

using Classes = std::vector<const uZClass*>;

Classes collect(const ClassRange& range) { return {range.begin(), range.end()}; }

/// A forest as plain vectors, newest first, beside the records.
struct Model
{
    struct Tree
    {
        std::unique_ptr<const uZClass> record;
        Tree* base = nullptr;
        std::vector<std::unique_ptr<Tree>> children;
    };

    Tree& add(Tree* base)
    {
        auto& siblings = base != nullptr ? base->children : roots;
        auto tree = std::make_unique<Tree>();
        tree->base = base;
        const Module& module = getThisModule();
        tree->record = base != nullptr
                           ? std::make_unique<uZClass>(OXA_TEXT("x"), base->record.get(), module, ClassVersion())
                           : std::make_unique<uZClass>(OXA_TEXT("x"), module, ClassVersion());
        return **siblings.insert(siblings.begin(), std::move(tree));
    }

    static void preOrder(const std::vector<std::unique_ptr<Tree>>& trees, Classes& all, Classes& leaves)
    {
        for (const auto& tree : trees)
        {
            all.push_back(tree->record.get());
            if (tree->children.empty()) leaves.push_back(tree->record.get());
            preOrder(tree->children, all, leaves);
        }
    }

    std::vector<std::unique_ptr<Tree>> roots;
};

void removeLeaf(Model& model, std::vector<Model::Tree*>& trees, std::size_t index)
{
    Model::Tree* const tree = trees[index];
    if (!tree->children.empty()) return;
    auto& siblings = tree->base != nullptr ? tree->base->children : model.roots;
    std::erase_if(siblings, [tree](const auto& sibling) { return sibling.get() == tree; });
    trees.erase(trees.begin() + static_cast<std::ptrdiff_t>(index));
}

/// Base-first destruction would be against the rules.
void destroy(std::vector<std::unique_ptr<Model::Tree>>& trees)
{
    for (const auto& tree : trees) destroy(tree->children);
    trees.clear();
}

TEST(uZClass, WalksAgreeWithAModelWhileClassesComeAndGo)
{
    const Classes others = collect(uZClass::allClasses());
    const Classes otherRoots = collect(uZClass::rootClasses());
    std::mt19937 random(3);
    Model model;
    std::vector<Model::Tree*> trees;
    for (int round = 0; round < 400; ++round)
    {
        if (!trees.empty() && random() % 3 == 0)
            removeLeaf(model, trees, random() % trees.size());
        else
            trees.push_back(&model.add(trees.empty() || random() % 5 == 0 ? nullptr : trees[random() % trees.size()]));

        Classes all;
        Classes leaves;
        Model::preOrder(model.roots, all, leaves);
        all.insert(all.end(), others.begin(), others.end());
        ASSERT_EQ(collect(uZClass::allClasses()), all);
        Classes roots;
        for (const auto& root : model.roots) roots.push_back(root->record.get());
        roots.insert(roots.end(), otherRoots.begin(), otherRoots.end());
        ASSERT_EQ(collect(uZClass::rootClasses()), roots);

        for (const Model::Tree* tree : trees)
        {
            const uZClass& record = *tree->record;
            Classes derived;
            Classes derivedLeaves;
            Model::preOrder(tree->children, derived, derivedLeaves);
            ASSERT_EQ(collect(record.derivedClasses()), derived);
            ASSERT_EQ(collect(record.leafClasses()), derivedLeaves);
            Classes children;
            for (const auto& child : tree->children) children.push_back(child->record.get());
            ASSERT_EQ(collect(record.childClasses()), children);
            Classes bases;
            for (const Model::Tree* base = tree->base; base != nullptr; base = base->base)
                bases.push_back(base->record.get());
            ASSERT_EQ(collect(record.baseClasses()), bases);

            const uZClass* const other = trees[random() % trees.size()]->record.get();
            const bool isBase = other == &record || std::find(bases.begin(), bases.end(), other) != bases.end();
            ASSERT_EQ(record.isDerivedFrom(other), isBase);
        }
    }
    destroy(model.roots);
    EXPECT_EQ(collect(uZClass::allClasses()), others);
    EXPECT_EQ(*std::ranges::find(uZClass::allClasses(), BaseNode::Class()), BaseNode::Class());
}

TEST(uZClass, CursorsStartAndEndAtNull)
{
    const uZClass root(OXA_TEXT("root"), getThisModule(), ClassVersion());
    const uZClass leaf(OXA_TEXT("leaf"), &root, getThisModule(), ClassVersion());
    const uZClass* it = nullptr;
    EXPECT_TRUE(root.iterateLeafClasses(it));
    EXPECT_EQ(it, &leaf);
    EXPECT_FALSE(root.iterateLeafClasses(it));
    EXPECT_EQ(it, nullptr);
    for (const auto iterate :
         {&uZClass::iterateLeafClasses, &uZClass::iterateChildClasses, &uZClass::iterateDerivedClasses})
        EXPECT_TRUE(!(leaf.*iterate)(it) && it == nullptr);
    EXPECT_FALSE(root.iterateBaseClasses(it));
    EXPECT_TRUE(leaf.iterateBaseClasses(it) && it == &root);
    EXPECT_FALSE(root.isDerivedFrom(nullptr));

    const uZClass other(OXA_TEXT("other"), &root, getThisModule(), ClassVersion());
    for (const uZClass* outside : {&root, &other, BaseNode::Class()})
        for (const auto iterate : {&uZClass::iterateLeafClasses, &uZClass::iterateDerivedClasses})
        {
            it = outside;
            EXPECT_TRUE(!(leaf.*iterate)(it) && it == nullptr);
        }
}

TEST(uZClass, IsFoundByItsNameAndKnowsAncestorsOfAnyDepth)
{
    std::vector<std::unique_ptr<const uZClass>> line;
    for (int i = 0; i < 20; ++i)
        line.push_back(std::make_unique<uZClass>(i == 19 ? OXA_TEXT("deepest") : OXA_TEXT("deep"),
                                                 i == 0 ? nullptr : line.back().get(), getThisModule(),
                                                 ClassVersion()));
    for (std::size_t i = 0; i < line.size(); ++i)
        for (std::size_t j = 0; j < line.size(); ++j) EXPECT_EQ(line[i]->isDerivedFrom(line[j].get()), i >= j);
    EXPECT_EQ(uZClass::find(OXA_TEXT("deepest")), line.back().get());
    EXPECT_EQ(uZClass::find(OXA_TEXT("Deepest")), nullptr);
    while (!line.empty()) line.pop_back();
}

TEST(uZClass, RecordsOfTheLibraryKnowTheirPlaceAndTheirMakers)
{
    struct Case
    {
        const uZClass* record;
        const Char* name;
        const uZClass* base;
    };
    for (const Case& c : {Case{BaseNode::Class(), OXA_TEXT("BaseNode"), nullptr},
                          Case{ObserverInfo::Class(), OXA_TEXT("ObserverInfo"), nullptr},
                          Case{InfoStringMap::Class(), OXA_TEXT("InfoStringMap"), ObserverInfo::Class()}})
    {
        EXPECT_EQ(String(c.record->name), c.name);
        EXPECT_EQ(c.record->base, c.base);
        EXPECT_EQ(c.record->module, &getThisModule());
        EXPECT_EQ(c.record->version, ClassVersion());
    }
    EXPECT_EQ(InfoStringMap().getClassType(), InfoStringMap::Class());

    const SmartPtr<BaseNode> node = createFromClass<BaseNode>(BaseNode::Class());
    ASSERT_TRUE(node);
    EXPECT_EQ(node->getRefCounter(), 1U);
    const std::shared_ptr<ObserverInfo> info = createFromClass<ObserverInfo>(ObserverInfo::Class());
    EXPECT_TRUE(info != nullptr && info->willExpire());
    EXPECT_EQ(createFromClass<InfoStringMap>(InfoStringMap::Class()), nullptr);
    EXPECT_EQ(createFromClass<ObserverInfo>(BaseNode::Class()), nullptr);
    EXPECT_EQ(createFromClass<ObserverInfo>(nullptr), nullptr);
    EXPECT_EQ(createFromClass<BaseNode>(recordWithoutTypes()), nullptr);
}

struct Shape : BaseNode
{
    static const uZClass* Class()
    {
        static const ClassRecord<Shape, BaseNode> record(OXA_TEXT("Shape"));
        return &record;
    }
    const uZClass* getClassType() const override { return Class(); }
    virtual int corners() const = 0;
};

struct Square : Shape
{
    static const uZClass* Class()
    {
        static const ClassRecord<Square, Shape> record(OXA_TEXT("Square"), ClassVersion{3, 1});
        return &record;
    }
    const uZClass* getClassType() const override { return Class(); }
    int corners() const override { return 4; }
};

struct Plain
{
    static const uZClass* Class()
    {
        static const ClassRecord<Plain> record(OXA_TEXT("Plain"), {}, getThisModule());
        return &record;
    }
};

TEST(ClassRecord, MakesItsClassForWhoeverAsks)
{
    const uZClass* const square = Square::Class();
    EXPECT_EQ(square->base, Shape::Class());
    EXPECT_EQ(square->module, &ownModule());
    EXPECT_EQ(square->version, (ClassVersion{3, 1}));
    EXPECT_EQ(createFromClass<Square>(square)->corners() + createFromClass<Shape>(square)->corners(), 8);
    const SmartPtr<BaseNode> node = createNode(square);
    EXPECT_EQ(node->getRefCounter(), 1U);
    EXPECT_TRUE(node->isKindOf<Square>() && node->isKindOf<Shape>() && !node->isKindOf<Plain>());
    EXPECT_EQ(createNode<Shape>(square)->corners(), 4);
    EXPECT_FALSE(createNode<Shape>(BaseNode::Class()));
    EXPECT_FALSE(createNode(Shape::Class()) || createNode(Plain::Class()) || createNode(nullptr));
    EXPECT_NE(createFromClass<Plain>(Plain::Class()), nullptr);
    EXPECT_EQ(Plain::Class()->module, &getThisModule());
}

}  // namespace

}  // namespace Oxa_1_1::test
