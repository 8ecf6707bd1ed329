// One viewer's show: loads it, starts, pauses, jumps, ends. Knows nothing of what the page looks
// like, which is told by events: "state", and with a `text` "progress" (and its `fraction`),
// "notice" (what is missing, while the show goes on) and "failure" (while it does not).
import {loadcontent, Missing} from './content.js';
import {Run} from './run.js';
import {scenesof} from './show.js';
import {decodesong, Song} from './song.js';

const sdl = {keydown: 2, keyup: 3, buttondown: 5, wheelup: 4, wheeldown: 5};
const presents = 26; // while the show prepares

// A promise that is fulfilled from outside.
function gate() {
    let open;
    const promise = new Promise(resolve => { open = resolve; });
    return {promise, open};
}

export class Player extends EventTarget {
    state = 'loading'; // then ready, playing, paused, seeking; or failed
    song = null;
    scenes = [];       // name and beat of each
    frames = 0;        // that were drawn and shown
    ending = false;
    #newcanvas;
    #content = null;
    #run = null;
    #start = gate();   // opens at the viewer's click
    #ready = gate();   // opens when the show is loaded
    #pause = null;     // a gate, in a pause
    #volume = 1;
    #target = null;    // beat of a jump under way
    #origin = 0;       // beat that it began at

    // newcanvas() puts a fresh canvas into the page and returns it; width() says how wide, in
    // pixels, the picture should be.
    constructor(newcanvas, width) {
        super();
        this.#newcanvas = newcanvas;
        this.width = width;
    }

    // ---- loading ----

    async load() {
        try {
            this.#content = await loadcontent(fraction => this.#progress('Loading', fraction));
        } catch (error) {
            return this.#fail(error instanceof Missing ? error.message : `The show does not load (${error.message}).`);
        }
        const song = this.#loadsong();
        await this.#prepare();
        this.#progress('Decoding the song', 1);
        await song;
        this.#setstate('ready');
    }

    async #loadsong() {
        try {
            this.song = new Song(await decodesong(await this.#content.song));
        } catch (error) {
            const why = error instanceof Missing ? error.message : 'The song cannot be decoded here.';
            this.#tell('notice', {text: `${why} The show plays without sound.`});
        }
    }

    // Starts a run, as far as it goes without the viewer's click. After a failure it never returns.
    async #prepare() {
        this.ending = false;
        this.#ready = gate();
        const run = this.#run = new Run(this, this.#newcanvas());
        try {
            await run.open(this.#content);
            this.scenes = scenesof(run.module);
        } catch (error) {
            if (run === this.#run)
                this.#fail(`The show does not start (${error.message}).`);
        }
        await this.#ready.promise;
    }

    // ---- what the viewer wants ----

    // In the viewer's click, or there will be no sound.
    async play() {
        if (this.state !== 'ready')
            return;
        this.#setstate('starting');
        await this.#opensong();
        this.#start.open();
    }

    async #opensong() {
        try {
            await this.song?.open();
            if (this.song)
                this.song.volume = this.#volume;
        } catch (error) {
            this.losesong();
        }
    }

    get paused() {
        return this.#pause !== null;
    }

    async pause() {
        if (this.state !== 'playing')
            return;
        this.#pause = gate();
        this.#run.stopwatch.pause();
        this.#setstate('paused');
        await this.song?.pause();
    }

    async resume() {
        if (this.state !== 'paused')
            return;
        this.#setstate('resuming');
        await this.#resumesong();
        this.#setstate('playing');
        this.#unpause();
    }

    async #resumesong() {
        try {
            await this.song?.resume();
        } catch (error) {
            this.losesong();
        }
    }

    #unpause() {
        this.#run.stopwatch.resume();
        this.#pause?.open();
        this.#pause = null;
    }

    // Goes to a beat with the state that the show would have there: plays up to it unseen.
    async jump(beat) {
        if (!['playing', 'paused', 'seeking'].includes(this.state))
            return;
        const back = beat < this.beat;
        this.#target = beat;
        this.#origin = back ? 0 : this.beat;
        this.#setstate('seeking');
        if (this.paused) {
            await this.#resumesong();
            this.#unpause();
        }
        if (back) {
            this.#run.abandon();
            this.song?.halt();
            await this.#prepare();
        } else if (this.#run.started) { // else its first frame asks for the target
            this.#run.module._web_jump(beat);
        }
    }

    end() {
        if (!this.#run || ['loading', 'ready', 'failed'].includes(this.state))
            return;
        this.ending = true;
        this.song?.halt();
        this.key('q', true);
        this.#unpause();
    }

    key(name, down) {
        const number = name === 'Escape' ? 27 : name.length === 1 ? name.toLowerCase().charCodeAt(0) : 0;
        if (number && this.#run)
            this.#run.events.push([down ? sdl.keydown : sdl.keyup, number]);
    }

    wheel(up) {
        this.#run?.events.push([sdl.buttondown, up ? sdl.wheelup : sdl.wheeldown]);
    }

    set buttons(mask) {
        if (this.#run)
            this.#run.buttons = mask;
    }

    get volume() {
        return this.#volume;
    }

    // From 0 to 1.
    set volume(volume) {
        this.#volume = volume;
        if (this.song)
            this.song.volume = volume;
    }

    get beat() {
        return this.#run?.beat ?? 0;
    }

    // The last beat of the song; without one, that of the last scene.
    get lastbeat() {
        return this.song ? this.#run.module._web_beatat(this.song.duration) : this.scenes.at(-1).beat;
    }

    // ---- what a run tells ----

    preparing() {
        this.#progress('Preparing the show', this.#run.presents / presents);
    }

    // The show is loaded. Returns its song, or null, when the viewer has clicked.
    async prepared() {
        this.#ready.open();
        await this.#start.promise;
        return this.song;
    }

    // A frame is drawn. Returns whether to wait for the next.
    shown(run) {
        if (this.#target !== null && run.beat < this.#target) {
            run.module._web_jump(this.#target);
            return false;
        }
        this.#target = null;
        ++this.frames;
        if (this.state !== 'playing' && !this.paused)
            this.#setstate('playing');
        return true;
    }

    // A moment has been played unseen.
    passing(run) {
        this.#progress('Playing up to there', (run.beat - this.#origin) / (this.#target - this.#origin));
    }

    async unpaused() {
        await this.#pause?.promise;
    }

    losesong() {
        this.#run?.halt();
        this.song?.close();
        this.song = null;
        this.#tell('notice', {text: 'There is no sound device: the show plays without sound.'});
    }

    // An effect has said that this machine cannot draw it.
    lacks(line) {
        this.#tell('notice', {text: `${line}.`});
    }

    // The show has ended, by its viewer or by a failure.
    async over({reason}) {
        if (!this.ending)
            return this.#fail(`The show broke off: ${reason ?? this.#run.lines.slice(-2).join(' ')}.`);
        this.#run.abandon();
        this.#target = null;
        this.#start = gate();
        this.#setstate('loading');
        await this.song?.close();
        await this.#prepare();
        this.#setstate('ready');
    }

    // ---- what the page is told ----

    #setstate(state) {
        this.state = state;
        this.#tell('state', {});
    }

    #progress(text, fraction) {
        this.#tell('progress', {text, fraction: Math.min(1, fraction)});
    }

    #fail(text) {
        this.#run?.abandon();
        this.song?.close();
        this.#setstate('failed');
        this.#tell('failure', {text});
    }

    #tell(type, detail) {
        this.dispatchEvent(Object.assign(new Event(type), detail));
    }
}
