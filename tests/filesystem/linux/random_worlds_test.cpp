// Small worlds with links, and one operation in each: what it may change, what it may lose, and when it may say that it
// was done.

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <stdexcept>

#include "tests/filesystem/linux/world.h"
#include "tests/filesystem/messages.h"

namespace Oxa_1_1::test
{

namespace
{

namespace fs = std::filesystem;

enum class Kind
{
    REMOVE,
    EMPTY,
    COPY,
    COPY_CONTENTS,
    MOVE
};

/// Ends what would not end.
class Guard final : public IProgress
{
   public:
    void onProgress(double) override {}
    void onItem(const std::string&) override
    {
        if (++m_items > 1000) throw std::runtime_error("It does not end.");
    }

   private:
    int m_items = 0;
};

class RandomWorld
{
   public:
    explicit RandomWorld(unsigned seed) : m_random(seed)
    {
        for (const std::string& folder : m_folders) m_temp.makeFolder(folder);
        for (int i = 0; i < 6; ++i) addFolder();
        for (int i = 0; i < 6; ++i) m_temp.write(nameIn(oneOf(m_folders), "f"), "content " + std::to_string(i));
        for (int i = 0; i < 3; ++i) addLink();
        m_kind = static_cast<Kind>(number(5));
        m_overwrites = number(2) == 1;
        m_source = oneOf(m_places);
        m_target = number(5) == 0 ? nameIn(oneOf(m_folders), "n") : oneOf(number(2) == 0 ? m_folders : m_places);
    }

    void check()
    {
        const World before = worldIn(m_temp);
        const auto sourceFolder = real(m_source);
        const bool isLink = fs::is_symlink(m_temp.path(m_source));
        const std::string place = m_kind == Kind::COPY ? m_target + "/" + lastOf(m_source) : m_target;
        const auto replaced = reachableFrom(place);
        const std::string placeFolder = real(place);
        const std::string ownPlace = real(m_target) + "/" + lastOf(m_source);
        const bool result = act();
        const World after = worldIn(m_temp);

        std::set<std::string> lost = contentsOf(before);
        for (const auto& content : contentsOf(after)) lost.erase(content);
        for (const auto& [name, content] : before)
        {
            const bool isOfSource = isBelow(name, sourceFolder) && (!isLink || m_kind != Kind::MOVE);
            const bool stays = after.contains(name) && after.at(name) == content;
            bool mayGo = false;
            switch (m_kind)
            {
                case Kind::REMOVE:
                    mayGo = name == m_source || (isOfSource && !isLink);
                    break;
                case Kind::EMPTY:
                    mayGo = isOfSource && !isLink;
                    break;
                case Kind::COPY:
                    // Of a place that is a link, the link goes.
                    mayGo = !result && !isOfSource && name != sourceFolder &&
                            ((name + "/").starts_with(placeFolder + "/") || name == ownPlace);
                    [[fallthrough]];
                case Kind::COPY_CONTENTS:
                    mayGo = mayGo || (m_overwrites && replaced.contains(name));
                    break;
                case Kind::MOVE:
                    mayGo = name == m_source || (isOfSource && !isLink) ||
                            (m_overwrites && (name == m_target || replaced.contains(name)));
                    EXPECT_TRUE(!lost.contains(content) || (m_overwrites && !isOfSource && mayGo)) << name;
                    break;
            }
            EXPECT_TRUE(stays || mayGo) << name;
        }
        if (result && (m_kind == Kind::REMOVE || m_kind == Kind::MOVE))
        {
            EXPECT_FALSE(fs::exists(fs::symlink_status(m_temp.path(m_source))));
        }
    }

    std::string description() const
    {
        static constexpr const char* NAMES[] = {"remove ", "empty ", "copy ", "copy the contents of ", "move "};
        std::string text = NAMES[static_cast<int>(m_kind)] + m_source + " to " + m_target +
                           (m_overwrites ? " (overwriting) in" : " in");
        for (const auto& [name, content] : m_world) text.append("\n  " + name + ": ").append(content);
        return text;
    }

   private:
    unsigned number(std::size_t end) { return static_cast<unsigned>(m_random() % end); }
    const std::string& oneOf(const Names& names) { return names[number(names.size())]; }
    /// Few names, so that they meet.
    std::string nameIn(const std::string& folder, const std::string& kind)
    {
        return folder + "/" + kind + std::to_string(number(2));
    }
    static std::string lastOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

    void addFolder()
    {
        const std::string name = nameIn(oneOf(m_folders), "d");
        if (m_temp.has(name)) return;
        m_temp.makeFolder(name);
        m_folders.push_back(name);
        m_places.push_back(name);
    }

    void addLink()
    {
        const std::string name = nameIn(oneOf(m_folders), number(2) == 0 ? "d" : "f");
        if (fs::exists(fs::symlink_status(m_temp.path(name)))) return;
        fs::create_symlink(m_temp.path(oneOf(m_folders)), m_temp.path(name));
        m_places.push_back(name);
    }

    /// The real path of a folder.
    std::string real(const std::string& name) const
    {
        return fs::weakly_canonical(m_temp.path(name)).lexically_relative(fs::canonical(m_temp.path())).string();
    }

    /// All names in the folder, and in those that links below it lead to.
    std::set<std::string> reachableFrom(const std::string& folder) const
    {
        std::set<std::string> names;
        Names open{real(folder)};
        while (!open.empty())
        {
            const std::string path = open.back();
            open.pop_back();
            if (!fs::is_directory(m_temp.path(path))) continue;
            for (const auto& entry : fs::directory_iterator(m_temp.path(path)))
            {
                const std::string name = path + "/" + entry.path().filename().string();
                if (!names.insert(name).second) continue;
                names.insert(real(name));
                open.push_back(real(name));
            }
        }
        return names;
    }

    bool act()
    {
        m_world = worldIn(m_temp);
        const auto source = m_temp.directory(m_source);
        const auto target = m_temp.directory(m_target);
        const auto guard = std::make_shared<Guard>();
        switch (m_kind)
        {
            case Kind::REMOVE:
                return source->remove(true);
            case Kind::EMPTY:
                return source->removeContents(true);
            case Kind::COPY:
                return source->copy(*target, m_overwrites, guard) != nullptr;
            case Kind::COPY_CONTENTS:
                return source->copyContents(*target, true, m_overwrites, guard);
            default:
                return source->move(*target, m_overwrites);
        }
    }

    std::minstd_rand m_random;
    TempFolder m_temp;
    Messages m_messages;
    World m_world;
    Kind m_kind = Kind::REMOVE;
    bool m_overwrites = false;
    Names m_folders{"w", "o"};
    Names m_places;
    std::string m_source;
    std::string m_target;
};

TEST(RandomWorlds, LoseNothingAndChangeNothingElsewhere)
{
    const char* const wanted = std::getenv("OXA_TEST_WORLDS");
    const unsigned worlds = wanted != nullptr ? static_cast<unsigned>(std::atoi(wanted)) : 500;
    for (unsigned seed = 1; seed <= worlds && !testing::Test::HasFailure(); ++seed)
    {
        RandomWorld world(seed);
        EXPECT_NO_THROW(world.check());
        if (testing::Test::HasFailure()) ADD_FAILURE() << "World " << seed << ": " << world.description();
    }
}

}  // namespace

}  // namespace Oxa_1_1::test
