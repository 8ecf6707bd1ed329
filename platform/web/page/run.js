// One run of the show from its beginning to its end: the program with a canvas of its own, and the
// host that the program asks (see web.h). What happens is told to the player.
import {animationframe, Clock, Pacer, Stopwatch, turn} from './clock.js';
import {closeshow, openshow} from './show.js';

const keptlines = 500;
const stall = 2000; // milliseconds without sound, after which the show goes on silently

export class Run {
    events = [];
    buttons = 0;
    lines = [];       // the last of what the show printed
    presents = 0;
    stopwatch = new Stopwatch();
    #player;
    #canvas;
    #module = null;
    #clock = new Clock(this.stopwatch);
    #pacer = new Pacer();
    #loaded = false;
    #abandoned = false;
    #heard = {position: -1, at: 0};

    constructor(player, canvas) {
        this.#player = player;
        this.#canvas = canvas;
    }

    // Loads the program and starts it, unless it was abandoned meanwhile.
    async open(content) {
        this.#canvas.width = this.width();
        this.#canvas.height = Math.round(this.#canvas.width * 480 / 854);
        this.#canvas.addEventListener('webglcontextlost', () => this.#over({reason: 'the graphics driver gave up'}));
        this.#module = await openshow(content, this.#canvas, this);
        if (this.#abandoned)
            return;
        this.#module.ended.then(end => this.#over(end));
        this.#module.start();
    }

    // Nothing is heard of it any more.
    abandon() {
        this.#abandoned = true;
        closeshow(this.#canvas);
    }

    #over(end) {
        if (!this.#abandoned)
            this.#player.over(end);
        this.#abandoned = true;
    }

    get module() {
        return this.#module;
    }

    // Whether it is past its preparation.
    get started() {
        return this.#loaded;
    }

    get beat() {
        return this.#loaded ? this.#module._web_beat() : 0;
    }

    // ---- what the program asks ----

    async frame() {
        await this.#unlessabandoned();
        if (!this.#loaded) {
            ++this.presents;
            this.#player.preparing();
            return turn();
        }
        if (this.#player.shown(this))
            await this.#nextframe();
    }

    async turn() {
        await this.#unlessabandoned();
        this.#player.passing(this);
        return turn();
    }

    async song() {
        const song = await this.#player.prepared();
        this.#loaded = true;
        return song !== null;
    }

    play(seconds) {
        if (!this.#player.song) // lost on the way
            return;
        this.#player.song.play(seconds);
        this.#clock.follow(this.#player.song);
    }

    halt() {
        this.#player.song?.halt();
        this.#clock.follow(this.stopwatch);
    }

    now() {
        return this.#clock.now();
    }

    width() {
        return this.#player.width();
    }

    print(line) {
        this.lines.push(line);
        if (this.lines.length > keptlines)
            this.lines.shift();
        if (line.includes(' cannot draw'))
            this.#player.lacks(line);
    }

    // ---- between two frames ----

    async #nextframe() {
        let stamp;
        do {
            await this.#player.unpaused();
            stamp = await animationframe();
            await this.#unlessabandoned();
        } while (!this.#player.ending && (this.#player.paused || !this.#pacer.takes(stamp)));
        this.#listen();
        if (this.width() !== this.#canvas.width)
            this.#module._web_resize(this.width());
    }

    // A sound device that has gone must not take the picture with it.
    #listen() {
        const position = this.#player.song?.playing ? this.#player.song.position() : -1;
        if (position === -1 || position !== this.#heard.position)
            this.#heard = {position, at: performance.now()};
        else if (performance.now() - this.#heard.at > stall)
            this.#player.losesong();
    }

    // A run that was abandoned waits for ever, and is forgotten with its memory.
    async #unlessabandoned() {
        if (this.#abandoned)
            await new Promise(() => {});
    }
}
