#include "sync.h"

#include "main/clock.h"

#include <cstdio>
#include <cstring>

std::map<std::string, event*, std::less<>> events;

namespace {

event* registerevent(const char* name, float beatnum, int spawn) {
    fprintf(stderr, "adding event '%s' at time %.2f, spawn %i\n", name, double(beatnum), spawn);
    event* added = new event{spawn ? beatnum + beatgrid : beatnum, false, false, strdup(name)};
    events.emplace(name, added);
    return added;
}

} // namespace

sync_c::sync_c(const char* name, float beatnum, int spawn) {
    auto found = events.find(name);
    myevent = found != events.end() ? found->second : registerevent(name, beatnum, spawn);
}

sync_c::sync_c(const cue_t& cue) : sync_c(cue.name, cue.beat, 0) {}

bool sync_c::past() const {
    return beatgrid >= myevent->beatnum;
}

bool sync_c::once() const {
    if (myevent->happened || !past())
        return false;
    myevent->happened_queue = true;
    fprintf(stderr, "event '%s' happened! %.2f\n", myevent->name, double(beatgrid));
    return true;
}

bool fires(const cue_t& cue) {
    return sync_c(cue).once();
}

bool past(const cue_t& cue) {
    return sync_c(cue).past();
}

void sync_ack() {
    for (auto& entry : events)
        entry.second->happened = entry.second->happened_queue;
}

void sync_save() {
    FILE* file = fopen("eventsdump.txt", "wt");
    for (auto& entry : events) {
        event* e = entry.second;
        if (file)
            fprintf(file, "'%s' %.5f\n", e->name, double(e->beatnum));
        e->happened = e->happened_queue;
    }
    if (file)
        fclose(file);
}
