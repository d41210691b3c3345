// Nodes, their owners and their watchers.

#include "base/object/base_node.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/module/module.h"
#include "base/object/weak_ptr.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

class CountedNode : public BaseNode
{
   public:
    explicit CountedNode(std::atomic<int>& destroyed) : m_destroyed(destroyed) {}

    static const uZClass* Class()
    {
        static const uZClass record(OXA_TEXT("CountedNode"), BaseNode::Class(), getThisModule(),
                                    ClassVersion{1, 2, 3, 4});
        return &record;
    }
    const uZClass* getClassType() const override { return Class(); }

    unsigned int counterInDestructor = 0;

   protected:
    ~CountedNode() override
    {
        EXPECT_EQ(getRefCounter(), DEAD);
        // Nobody can reach the node any more, and passing it around revives nothing.
        EXPECT_FALSE(getWeakHandle().lock()->lock());
        SmartPtr<BaseNode>(this).reset();
        ++m_destroyed;
    }

   private:
    std::atomic<int>& m_destroyed;
};

TEST(InterlockedCounter, CountsAsItsOperatorsSay)
{
    InterlockedCounter counter = 3;
    EXPECT_EQ(counter += 5, 3U);
    EXPECT_EQ(counter, 8U);
    EXPECT_EQ(++counter, 9U);
    EXPECT_EQ(counter++, 9U);
    EXPECT_EQ(--counter, 9U);
    EXPECT_EQ(counter--, 9U);
    EXPECT_EQ(counter = 1U, 1U);
    EXPECT_EQ(counter--, 1U);
    EXPECT_EQ(--counter, 0xFFFFFFFFU);
    const InterlockedCounter copy = counter;
    counter = InterlockedCounter();
    EXPECT_EQ(copy, 0xFFFFFFFFU);
    EXPECT_EQ(counter, 0U);
}

TEST(BaseNode, LivesAsLongAsItsOwners)
{
    std::atomic<int> destroyed = 0;
    SmartPtr<CountedNode> first = makeNode<CountedNode>(destroyed);
    {
        const SmartPtr<BaseNode> second = first;
        const SmartPtr<const BaseNode> third = second.get();
        EXPECT_EQ(first->getRefCounter(), 3U);
    }
    EXPECT_EQ(first->getRefCounter(), 1U);
    const SmartPtr<CountedNode>& itself = first;
    first = itself;
    EXPECT_EQ(destroyed, 0);
    first.reset(first.get());
    EXPECT_EQ(destroyed, 0);
    SmartPtr<BaseNode> moved = std::move(first);
    EXPECT_FALSE(first);
    EXPECT_EQ(moved->getRefCounter(), 1U);
    moved = nullptr;
    EXPECT_EQ(destroyed, 1);
}

TEST(BaseNode, KnowsItsClass)
{
    std::atomic<int> destroyed = 0;
    const SmartPtr<BaseNode> node = makeNode<CountedNode>(destroyed);
    EXPECT_EQ(String(node->getClassName()), OXA_TEXT("CountedNode"));
    EXPECT_EQ(node->getClassVersion(), (ClassVersion{1, 2, 3, 4}));
    EXPECT_EQ(&node->getCodeModule(), &getThisModule());
    EXPECT_TRUE(node->isKindOf(CountedNode::Class()) && node->isKindOf(BaseNode::Class()));
    EXPECT_FALSE(node->isKindOf(nullptr));
    EXPECT_FALSE(makeNode<BaseNode>()->isKindOf(CountedNode::Class()));
    EXPECT_EQ(dynamicPointerCast<CountedNode>(node), node);
    EXPECT_FALSE(dynamicPointerCast<CountedNode>(makeNode<BaseNode>()));
    node->validityCheck(0xFFFFFFFF);
}

TEST(SmartPtr, ComparesAndHashesAsItsPointer)
{
    SmartPtr<BaseNode> a = makeNode<BaseNode>();
    SmartPtr<BaseNode> b = makeNode<BaseNode>();
    const SmartPtr<BaseNode> same = a;
    EXPECT_TRUE(a == same && a != b && a == a.get() && a != nullptr && SmartPtr<BaseNode>() == nullptr);
    EXPECT_EQ(a < b, a.get() < b.get());
    const std::unordered_set<SmartPtr<BaseNode>> nodes{a, b, same};
    EXPECT_EQ(nodes.size(), 2U);
    swap(a, b);
    EXPECT_EQ(b, same);
}

TEST(WeakHandle, ReachesANodeUntilItIsGone)
{
    std::atomic<int> destroyed = 0;
    SmartPtr<CountedNode> node = makeNode<CountedNode>(destroyed);
    const std::weak_ptr<WeakHandle> watched = node->getWeakHandle();
    std::shared_ptr<WeakHandle> handle = watched.lock();
    EXPECT_FALSE(handle->tryDestroy());
    EXPECT_EQ(handle->lock(), node);
    node.reset();
    EXPECT_EQ(destroyed, 1);
    EXPECT_FALSE(handle->lock());
    EXPECT_FALSE(handle->tryDestroy());
    EXPECT_FALSE(watched.expired());
    handle.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(WeakHandle, ForgetsANodeThatIsDestroyedBeforeItIsOwned)
{
    struct Failing : BaseNode
    {
        explicit Failing(std::shared_ptr<WeakHandle>& handle)
        {
            handle = getWeakHandle().lock();
            throw 1;
        }
    };
    std::shared_ptr<WeakHandle> handle;
    EXPECT_THROW(makeNode<Failing>(handle), int);
    EXPECT_FALSE(handle->lock());
}

TEST(WeakPtr, ReachesItsNodeWhileThatLives)
{
    std::atomic<int> destroyed = 0;
    SmartPtr<CountedNode> node = makeNode<CountedNode>(destroyed);
    WeakPtr<const CountedNode> watched = node;
    const WeakPtr<BaseNode> empty;
    EXPECT_TRUE(!empty.lock() && empty.expired() && !watched.expired());
    const WeakPtr<const BaseNode> ofBase = watched;
    EXPECT_TRUE(watched.lock() == node && ofBase.lock() == node);
    EXPECT_EQ(node->getRefCounter(), 1U);
    const SmartPtr<CountedNode> owner = constPointerCast<CountedNode>(watched.lock());
    CountedNode* const detached = node.detach();
    EXPECT_TRUE(!node && detached == owner && owner->getRefCounter() == 2);
    node = SmartPtr<CountedNode>::adopt(detached);
    EXPECT_EQ(node->getRefCounter(), 2U);
    watched.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(WeakHandle, TakesUpANodeThatNobodyOwnsYet)
{
    std::atomic<int> destroyed = 0;
    auto* const fresh = new CountedNode(destroyed);
    const std::shared_ptr<WeakHandle> handle = fresh->getWeakHandle().lock();
    SmartPtr<BaseNode> owner = handle->lock();
    EXPECT_EQ(owner.get(), fresh);
    EXPECT_EQ(fresh->getRefCounter(), 1U);
    owner.reset();
    EXPECT_EQ(destroyed, 1);
}

TEST(WeakHandle, GivesUpANodeOnce)
{
    const auto make = []
    {
        struct Unowned : BaseNode
        {
            // Given up by hand, so nobody destroys it but the test.
            using BaseNode::BaseNode;
            ~Unowned() override = default;
        };
        return std::make_unique<Unowned>();
    };
    const auto node = make();
    const std::shared_ptr<WeakHandle> handle = node->getWeakHandle().lock();
    EXPECT_TRUE(handle->tryDestroy());
    EXPECT_FALSE(handle->tryDestroy());
    EXPECT_FALSE(handle->lock());
    SmartPtr<BaseNode>(node.get()).reset();
    EXPECT_EQ(node->getRefCounter(), 0U);
}

/// The handle as one has it who is just using it.
template <auto Member>
struct Busy
{
    friend std::atomic<bool>& busy(WeakHandle& handle) { return handle.*Member; }
};
template struct Busy<&WeakHandle::m_isBusy>;
std::atomic<bool>& busy(WeakHandle& handle);

/// A watcher comes to the handle before the thread that dropped the last reference does.
TEST(WeakHandle, RevivesANodeWhoseLastOwnerIsOnItsWay)
{
    bool isRevived = false;
    for (int round = 0; round < 100 && !isRevived; ++round)
    {
        std::atomic<int> destroyed = 0;
        CountedNode* const node = new CountedNode(destroyed);
        SmartPtr<BaseNode> owner = node;
        const std::shared_ptr<WeakHandle> handle = node->getWeakHandle().lock();
        SmartPtr<BaseNode> revived;
        busy(*handle) = true;
        std::thread watcher([&] { revived = handle->lock(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::thread last([&] { owner.reset(); });
        while (node->getRefCounter() != 0) std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        busy(*handle) = false;
        watcher.join();
        last.join();
        isRevived = revived != nullptr;
        ASSERT_EQ(destroyed, isRevived ? 0 : 1);
        EXPECT_TRUE(!isRevived || node->getRefCounter() == 1);
        revived.reset();
        EXPECT_EQ(destroyed, 1);
        EXPECT_FALSE(handle->lock());
    }
    EXPECT_TRUE(isRevived);
}

/// Owners let go while watchers revive: the node dies once, and nobody sees it dead.
TEST(WeakHandle, SurvivesARaceOfOwnersAndWatchers)
{
    constexpr int ROUNDS = 60;
    constexpr int WATCHERS = 8;
    for (int round = 0; round < ROUNDS; ++round)
    {
        std::atomic<int> destroyed = 0;
        std::atomic<bool> start = false;
        SmartPtr<CountedNode> node = makeNode<CountedNode>(destroyed);
        const std::weak_ptr<WeakHandle> watched = node->getWeakHandle();
        std::vector<std::thread> threads;
        for (int i = 0; i < WATCHERS; ++i)
            threads.emplace_back(
                [&, watched]
                {
                    while (!start) std::this_thread::yield();
                    for (int attempt = 0; attempt < 50; ++attempt)
                    {
                        const std::shared_ptr<WeakHandle> handle = watched.lock();
                        if (handle == nullptr) return;
                        const SmartPtr<BaseNode> alive = handle->lock();
                        if (!alive) return;
                        const SmartPtr<BaseNode> copy = alive;
                        EXPECT_TRUE(copy->isKindOf(CountedNode::Class()));
                    }
                });
        start = true;
        node.reset();
        for (std::thread& thread : threads) thread.join();
        ASSERT_EQ(destroyed, 1);
        ASSERT_TRUE(watched.expired());
    }
}

TEST(WeakHandle, BearsAHundredThreads)
{
    std::atomic<int> destroyed = 0;
    SmartPtr<CountedNode> node = makeNode<CountedNode>(destroyed);
    const std::weak_ptr<WeakHandle> watched = node->getWeakHandle();
    std::vector<std::thread> threads;
    for (int i = 0; i < 100; ++i)
        threads.emplace_back(
            [watched]
            {
                // As long as some revive it, the node lives.
                for (int attempt = 0; attempt < 500; ++attempt)
                {
                    const std::shared_ptr<WeakHandle> handle = watched.lock();
                    if (handle == nullptr || !handle->lock()) return;
                }
            });
    node.reset();
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(destroyed, 1);
}

}  // namespace

}  // namespace Oxa_1_1::test
