// The song: decoded once, played from anywhere, and the one clock that it is heard by.

// Where the browser takes no Ogg Vorbis, the page brings a decoder.
async function decodehere(bytes) {
    const {decode} = await import('./vorbis.js');
    return decode(bytes);
}

// Decoding needs no click, playing does.
export async function decodesong(bytes) {
    const decoder = new OfflineAudioContext(2, 1, 44100);
    try {
        return await decoder.decodeAudioData(bytes.slice().buffer);
    } catch (error) {
        return decodehere(bytes);
    }
}

const patience = 5000; // milliseconds for a sound device to start

export class Song {
    #buffer;
    #context = null;
    #gain = null;
    #source = null;
    #offset = 0;    // seconds into the song that sounded at
    #started = 0;   // this time of the context
    #resumed = 0;   // performance time of the last resume: stamps from before it are void
    #held = null;   // position in a pause
    #volume = 1;

    constructor(buffer) {
        this.#buffer = buffer;
    }

    // Opens the sound device. In the viewer's click. Rejects where there is none.
    async open() {
        this.#context = new AudioContext({latencyHint: 'playback'});
        this.#gain = this.#context.createGain();
        this.#gain.connect(this.#context.destination);
        this.volume = this.#volume;
        await this.#awake();
    }

    async #awake() {
        const late = new Promise((_, reject) => setTimeout(reject, patience, new Error('no sound device')));
        await Promise.race([this.#context.resume(), late]);
        this.#resumed = performance.now();
    }

    get duration() {
        return this.#buffer.duration;
    }

    get playing() {
        return this.#source !== null && this.#held === null;
    }

    // From 0 to 1; loudness as the ear has it goes with the square.
    set volume(volume) {
        this.#volume = volume;
        if (this.#gain)
            this.#gain.gain.value = volume * volume;
    }

    play(seconds) {
        this.halt();
        this.#source = this.#context.createBufferSource();
        this.#source.buffer = this.#buffer;
        this.#source.connect(this.#gain);
        this.#offset = seconds;
        this.#started = this.#context.currentTime;
        this.#source.start(0, seconds);
    }

    halt() {
        this.#source?.stop();
        this.#source?.disconnect();
        this.#source = null;
    }

    async pause() {
        this.#held = this.position();
        await this.#context.suspend();
    }

    async resume() {
        await this.#awake();
        this.#held = null;
    }

    // It may be opened again.
    async close() {
        this.halt();
        this.#held = null;
        await this.#context?.close();
        this.#context = this.#gain = null;
    }

    // Seconds of the song as it is heard; stands still until the first of it is.
    position() {
        return this.#held ?? this.#offset + Math.max(0, this.#heard() - this.#started);
    }

    // The time of the context that leaves the loudspeaker now, not the one that is computed now.
    #heard() {
        const context = this.#context;
        const stamp = context.getOutputTimestamp?.();
        if (!stamp || stamp.performanceTime <= this.#resumed)
            return context.currentTime - (context.outputLatency || context.baseLatency || 0);
        const since = (performance.now() - stamp.performanceTime) / 1000;
        return Math.min(context.currentTime, stamp.contextTime + since);
    }
}
