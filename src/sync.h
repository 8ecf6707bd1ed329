// Named events on the beat grid. Ask about an event wherever it matters, by fires and past or by a
// sync_c of one's own; the first to ask registers the name, later ones find it and their other
// arguments are ignored.
// An event that fired stays visible to the rest of the frame and is acknowledged by sync_ack at its
// end. Main thread only.
#pragma once

#include <map>
#include <string>

// Registry record; never freed.
struct event {
    float beatnum;       // beats
    bool happened;       // fired in an earlier, acknowledged frame
    bool happened_queue; // fired; becomes happened at the next acknowledgement
    const char* name;
};

// All events so far, in byte order of their names.
extern std::map<std::string, event*, std::less<>> events;

// An event of the schedule.
struct cue_t {
    const char* name;
    float beat; // absolute
};

class sync_c {
public:
    event* myevent;

    // Registers `name` at `beatnum` (absolute beats, or relative to now when spawn is not 0), or
    // finds it.
    sync_c(const char* name, float beatnum, int spawn);
    explicit sync_c(const cue_t& cue);

    // The event's beat.
    float beatnum() const { return myevent->beatnum; }

    // Whether its beat has come.
    bool past() const;

    // Whether it fires in this frame. Every call in the firing frame is true, and prints.
    bool once() const;
};

// sync_c's once and past, of a cue.
bool fires(const cue_t& cue);
bool past(const cue_t& cue);

// Ends the frame: what fired has happened.
void sync_ack();

// Writes the registry to "eventsdump.txt" in the working directory, one "'name' beat" a line, and
// acknowledges like sync_ack. A file that cannot be opened is not reported.
void sync_save();
