// Runs the commands on its command line on the persistent data, one after the other:
//     standard KEY             prints the text in the standard store
//     instance                 makes the shared instance
//     instances COUNT          makes it in COUNT threads at once and prints the number of instances
//     combined                 makes the combined view, without an instance
//     set STORAGE KEY TEXT     sets a text through the instance; STORAGE is a raw value
//     get STORAGE KEY          prints the text that the instance finds
//     dump                     calls dumpout()
//     group NAME               names the suite of the application group
// An absent text prints "nothing".

#include <cstdio>
#include <cstdlib>
#include <latch>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "persistence/PersistentAppData.h"
#include "platform/foundation/Print.h"
#include "support/FileLocations.h"

namespace {

using namespace orvalo;
using Storage = PersistentAppData::Storage;

class Words {
  public:
    Words(int count, char** words) : words_(words + 1, words + count) {}
    bool areLeft() const { return next_ < words_.size(); }
    std::string take() { return words_.at(next_++); }
    Storage takeStorage() { return PersistentAppData::storage(std::stol(take())).value(); }

  private:
    std::vector<std::string> words_;
    std::size_t next_ = 0;
};

/// The number of different instances that `count` threads get when they start together.
std::size_t instances(std::ptrdiff_t count) {
    std::latch start(count);
    std::mutex mutex;
    std::set<std::shared_ptr<PersistentAppData>> all;
    std::vector<std::jthread> threads;
    for (auto left = count; left > 0; --left) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            const auto instance = PersistentAppData::sharedInstance();
            const std::lock_guard lock(mutex);
            all.insert(instance);
        });
    }
    threads.clear();
    return all.size();
}

void execute(const std::string& command, Words& words) {
    if (command == "standard") {
        print(UserDefaults::standard()->string(words.take()).value_or("nothing"));
    } else if (command == "instance") {
        PersistentAppData::sharedInstance();
    } else if (command == "instances") {
        print(std::to_string(instances(std::stol(words.take()))));
    } else if (command == "combined") {
        UserDefaultsViews::combined();
    } else if (command == "set") {
        const auto storage = words.takeStorage();
        const auto key = words.take();
        PersistentAppData::sharedInstance()->setString(key, words.take(), storage);
    } else if (command == "get") {
        const auto storage = words.takeStorage();
        print(PersistentAppData::sharedInstance()
                  ->getString(words.take(), storage)
                  .value_or("nothing"));
    } else if (command == "dump") {
        PersistentAppData::sharedInstance()->dumpout();
    } else if (command == "group") {
        sharedContainer = words.take();
    } else {
        std::fprintf(stderr, "persistence_peer: %s?\n", command.c_str());
        std::exit(2);
    }
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): words that make no sense are to end the program.
int main(int argc, char** argv) {
    for (Words words(argc, argv); words.areLeft();) {
        execute(words.take(), words);
    }
    return EXIT_SUCCESS;
}
