// Decodes Ogg Vorbis where the browser does not.
import {turn} from './clock.js';
import vorbisprogram from './vorbisprogram.js';

const channels = 2;

// Returns an AudioBuffer. Rejects what is no song.
export async function decode(bytes) {
    let at = 0;
    let buffer = null;
    const module = await vorbisprogram({
        bytes,
        take(channel, samples) {
            if (at < buffer.length)
                buffer.copyToChannel(samples, channel, at);
        },
    });
    const length = module._vorbis_open();
    if (!length)
        throw new Error('the song is no Ogg Vorbis');
    buffer = new AudioBuffer({numberOfChannels: channels, length, sampleRate: module._vorbis_rate()});
    for (let count; (count = module._vorbis_decode()) > 0; at += count)
        await turn();
    return buffer;
}
