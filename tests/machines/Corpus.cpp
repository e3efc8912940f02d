// All topics, one behind the other.
#include "machines/Corpus.h"

namespace corpus {

std::vector<Machine> Machines() {
    std::vector<Machine> all;
    for (const auto topic :
         {EarlyServers, Blades, LargeServers, OtherMakersServers, DamagedServers}) {
        for (const Machine& machine : topic()) {
            all.push_back(machine);
        }
    }
    return all;
}

}  // namespace corpus
