// The page: what is seen beside the picture, and the viewer's clicks, keys and taps.
import {Player} from './player.js';

const element = id => document.getElementById(id);
const stage = element('stage');
const controls = element('controls');
const shape = 854 / 480;
const shownfor = 3000; // milliseconds that the controls stay

// ---- the picture ----

function newcanvas() {
    const canvas = document.createElement('canvas');
    canvas.id = 'canvas';
    canvas.setAttribute('role', 'img');
    canvas.setAttribute('aria-label', 'The show');
    element('picture').replaceChildren(canvas);
    return canvas;
}

// The size of the picture on the screen in its own pixels, or the lines that were chosen.
function width() {
    const lines = Number(element('lines').value);
    if (lines)
        return Math.ceil(lines * shape);
    const box = element('picture').getBoundingClientRect();
    return Math.max(1, Math.round(Math.min(box.width, box.height * shape) * devicePixelRatio));
}

const player = new Player(newcanvas, width);
window.tarvisk = player; // for who looks from the console, and for the tests

// ---- before the start ----

const lessmotion = matchMedia('(prefers-reduced-motion: reduce)');

function ask(asked) {
    element('asked').hidden = !asked;
    element('go').hidden = asked;
    element(asked ? 'leave' : 'go').focus();
}

element('go').onclick = () => lessmotion.matches ? ask(true) : player.play();
element('still').onclick = () => { player.play(); ask(false); };
element('leave').onclick = () => ask(false);

player.addEventListener('progress', ({text, fraction}) => {
    const seeking = player.state === 'seeking';
    element(seeking ? 'waiting' : 'loading').textContent = `${text} (${Math.round(fraction * 100)} %)`;
    element(seeking ? 'waited' : 'loaded').value = fraction;
});

const missing = new Set();

player.addEventListener('notice', ({text}) => {
    if (['loading', 'ready'].includes(player.state)) {
        missing.add(text);
        element('missing').textContent = [...missing].join(' ');
        return;
    }
    element('notice').textContent = text;
    element('notice').hidden = false;
    setTimeout(() => { element('notice').hidden = true; }, 8000);
});

player.addEventListener('failure', ({text}) => {
    element('missing').textContent = `${text} Load the page again; if that does not help, try another browser.`;
});

// ---- the controls ----

let hiding = 0;

function showcontrols() {
    if (!['playing', 'paused'].includes(player.state))
        return;
    controls.hidden = false;
    delete stage.dataset.hush;
    clearTimeout(hiding);
    hiding = setTimeout(hidecontrols, shownfor);
}

function hidecontrols() {
    if (player.paused || controls.contains(document.activeElement) && document.activeElement.matches(':focus-visible'))
        return;
    controls.hidden = true;
    stage.dataset.hush = '';
}

function sceneof(beat) {
    return player.scenes.findLast(scene => scene.beat <= beat) ?? player.scenes[0];
}

function listscenes() {
    element('bar').max = Math.floor(player.lastbeat);
    element('scenes').replaceChildren(...player.scenes.map(scene => {
        const button = document.createElement('button');
        button.type = 'button';
        button.textContent = scene.name;
        button.onclick = () => player.jump(scene.beat);
        return button;
    }));
}

let dragging = false;

function showplace() {
    const beat = dragging ? Number(element('bar').value) : Math.max(0, player.beat);
    const scene = sceneof(beat);
    const text = `${scene.name}, beat ${Math.floor(beat)}`;
    if (!dragging)
        element('bar').value = beat;
    element('bar').setAttribute('aria-valuetext', text);
    element('where').textContent = text;
    [...element('scenes').children].forEach((button, i) => {
        if (player.scenes[i] === scene)
            button.setAttribute('aria-current', 'true');
        else
            button.removeAttribute('aria-current');
    });
}

setInterval(() => controls.hidden || showplace(), 200);

element('bar').oninput = () => { dragging = true; showplace(); showcontrols(); };
element('bar').onchange = () => { dragging = false; player.jump(Number(element('bar').value)); };
element('volume').oninput = event => { player.volume = event.target.value / 100; };
element('pause').onclick = togglepause;
element('full').onclick = togglefull;
element('end').onclick = () => player.end();

function togglepause() {
    return player.paused ? player.resume() : player.pause();
}

async function togglefull() {
    try {
        await (document.fullscreenElement ? document.exitFullscreen() : stage.requestFullscreen());
    } catch (error) {
        // The browser shows no full screen: the window stays as it is.
    }
}

element('full').hidden = !document.fullscreenEnabled;
document.onfullscreenchange = () => {
    element('full').textContent = document.fullscreenElement ? 'Leave full screen' : 'Full screen';
};

player.addEventListener('state', () => {
    const {state} = player;
    document.body.dataset.state = state;
    const watching = ['starting', 'playing', 'paused', 'resuming', 'seeking'].includes(state);
    element('start').hidden = watching;
    element('go').disabled = state !== 'ready';
    element('wait').hidden = state !== 'seeking';
    element('pause').textContent = state === 'paused' ? 'Go on' : 'Pause';
    for (const id of ['loaded', 'loading'])
        element(id).hidden = state !== 'loading';
    if (state === 'ready') {
        listscenes();
        element('go').focus();
    }
    if (!watching || state === 'seeking') {
        controls.hidden = true;
        delete stage.dataset.hush;
    }
    if (state === 'paused')
        showcontrols();
    if (state === 'playing')
        hidecontrols();
    holdscreen(state === 'playing');
});

// ---- keys, mouse, fingers ----

const ownkeys = {' ': togglepause, f: togglefull, q: () => player.end()};

addEventListener('keydown', event => {
    if (event.ctrlKey || event.altKey || event.metaKey || !element('start').hidden)
        return;
    const inbar = event.target.closest('input, select, button');
    if (inbar && event.key !== 'q' && event.key !== 'f')
        return showcontrols();
    if (event.key === 'Tab')
        return showcontrols();
    const own = ownkeys[event.key.toLowerCase()];
    if (own)
        event.preventDefault();
    if (event.repeat)
        return;
    own ? own() : player.key(event.key, true);
});
addEventListener('keyup', event => player.key(event.key, false));
addEventListener('wheel', event => player.state === 'playing' && player.wheel(event.deltaY < 0), {passive: true});

stage.addEventListener('pointermove', event => event.pointerType === 'mouse' && showcontrols());
stage.addEventListener('pointerdown', event => { player.buttons = event.buttons; });
stage.addEventListener('pointerup', event => { player.buttons = event.buttons; });
element('picture').onclick = () => controls.hidden ? showcontrols() : hidecontrols();
element('picture').ondblclick = togglefull;
controls.addEventListener('focusin', showcontrols);

// ---- a page that is looked at, or not ----

let wakelock = null;

async function holdscreen(on) {
    try {
        if (on && !wakelock)
            wakelock = await navigator.wakeLock?.request('screen');
        else if (!on && wakelock) {
            await wakelock.release();
            wakelock = null;
        }
    } catch (error) {
        wakelock = null; // refused, for instance on an empty battery
    }
}

let hidden = false; // paused because nobody looks

document.addEventListener('visibilitychange', async () => {
    if (document.hidden) {
        hidden = player.state === 'playing';
        await player.pause();
    } else if (hidden) {
        hidden = false;
        await player.resume();
    }
});

// ---- what a browser may lack ----

function lacking() {
    if (!location.protocol.startsWith('http'))
        return 'The page has to come from a web server; ./web starts one.';
    if (typeof WebAssembly !== 'object')
        return 'The show is a program, and this browser runs no WebAssembly. Try another browser.';
    const canvas = document.createElement('canvas');
    const context = canvas.getContext('webgl2') || canvas.getContext('webgl');
    if (!context)
        return 'The show is drawn with WebGL, and this browser has none. Switch on graphics acceleration in its settings, or try another browser.';
    context.getExtension('WEBGL_lose_context')?.loseContext();
    return '';
}

const lack = lacking();
if (lack) {
    document.body.dataset.state = 'failed';
    element('missing').textContent = lack;
    element('loaded').hidden = element('loading').hidden = true;
} else {
    player.load();
}
