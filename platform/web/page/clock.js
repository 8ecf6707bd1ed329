// The show's clock, and the rate at which frames are taken.

// Seconds of real time, without its pauses.
export class Stopwatch {
    #start = performance.now() / 1000;
    #held = null;

    position() {
        return this.#held ?? performance.now() / 1000 - this.#start;
    }

    pause() {
        this.#held ??= this.position();
    }

    resume() {
        this.#start = performance.now() / 1000 - this.position();
        this.#held = null;
    }
}

// Goes with one source at a time (anything with a position in seconds) and never back.
export class Clock {
    #base = 0;
    #origin = 0;
    #source;
    #last = 0;

    constructor(source) {
        this.follow(source);
    }

    follow(source) {
        this.#base = this.#last;
        this.#source = source;
        this.#origin = source.position();
    }

    now() {
        const time = this.#base + this.#source.position() - this.#origin;
        return this.#last = Math.max(this.#last, time);
    }
}

// Native frames are held to 20 ms. A screen of 60 Hz or less gets every frame that it can show; a
// faster one as many as native, so that what moves by the frame keeps its pace.
const hold = 20; // milliseconds
const fastest = 1000 / 62; // milliseconds of a frame at 60 Hz, with some room

export class Pacer {
    #due = 0;
    #periods = [];
    #last = 0;

    // Whether to take the frame of this animation stamp (milliseconds).
    takes(stamp) {
        this.#measure(stamp - this.#last);
        this.#last = stamp;
        if (this.#period() >= fastest) {
            this.#due = stamp;
            return true;
        }
        if (stamp < this.#due)
            return false;
        this.#due = Math.max(this.#due + hold, stamp - hold); // the rate holds, a pause is not caught up
        return true;
    }

    #measure(period) {
        this.#periods.push(period);
        if (this.#periods.length > 15)
            this.#periods.shift();
    }

    // The shortest but two: frames come late, but hardly early.
    #period() {
        return [...this.#periods].sort((a, b) => a - b)[Math.min(2, this.#periods.length - 1)];
    }
}

export function animationframe() {
    return new Promise(requestAnimationFrame);
}

// Resolves when the page has had a turn: sooner than any timer, and in a hidden page too.
const channel = new MessageChannel();
const waiting = [];
channel.port1.onmessage = () => waiting.shift()();
export function turn() {
    return new Promise(resolve => {
        waiting.push(resolve);
        channel.port2.postMessage(null);
    });
}
