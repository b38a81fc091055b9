'use strict';
// Filters the cases by outcome (the buttons) and by text (the search field). The choice is kept in
// the address, so that a filtered report can be passed on as a link; "#SUITE/CASE" opens one case.
(function () {
    const cases = Array.from(document.querySelectorAll('.case'));
    const groups = Array.from(document.querySelectorAll('main section'));
    const detailsOf = element => element.querySelector('details');
    const packed = cases.filter(element => 'packed' in element.dataset);
    const buttons = Array.from(document.querySelectorAll('.counts button'));
    const search = document.getElementById('search');
    const fold = document.getElementById('fold');
    const none = document.getElementById('none');

    // -- what a long report keeps packed until somebody wants it

    let unpacking = null;

    async function unpack() {
        const data = document.getElementById('packed').textContent;
        const bytes = Uint8Array.from(atob(data), character => character.charCodeAt(0));
        const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate'));
        const bodies = (await new Response(stream).text()).split('\0');
        packed.forEach((element, i) => { element.packedBody = bodies[i]; });
    }

    function unpacked() {
        if (unpacking === null)
            unpacking = packed.length > 0 ? unpack() : Promise.resolve();
        return unpacking;
    }

    async function fill(element) {
        if (!('packed' in element.dataset))
            return;
        delete element.dataset.packed;
        const body = element.querySelector('.body');
        try {
            await unpacked();
            body.innerHTML = element.packedBody;
        } catch (error) {
            body.textContent = 'This browser cannot unpack the steps (' + error + '); the result stream has them.';
        }
    }

    for (const element of packed)
        detailsOf(element).addEventListener('toggle', () => fill(element));

    // -- the filter

    function textOf(element) {
        if (element.searchText === undefined || 'packed' in element.dataset) {
            let text = element.textContent;
            if (element.packedBody !== undefined && 'packed' in element.dataset) {
                const entities = { '&lt;': '<', '&gt;': '>', '&quot;': '"', '&amp;': '&' };
                text += element.packedBody.replace(/<[^>]*>/g, '').replace(/&\w+;/g, name => entities[name] || name);
            }
            element.searchText = text.toLowerCase();
        }
        return element.searchText;
    }

    function show(outcome, text) {
        const wanted = text.trim().toLowerCase();
        let shown = 0;
        for (const element of cases) {
            const matches = (outcome === 'all' || element.dataset.outcomes.split(' ').includes(outcome))
                && (wanted === '' || textOf(element).includes(wanted));
            element.hidden = !matches;
            shown += matches ? 1 : 0;
        }
        none.hidden = shown > 0;
        for (const group of groups)
            group.hidden = !group.querySelector('.case:not([hidden])');
        for (const button of buttons)
            button.setAttribute('aria-pressed', String(button.dataset.outcome === outcome));
    }

    function choice() {
        const pressed = buttons.find(button => button.getAttribute('aria-pressed') === 'true');
        return pressed ? pressed.dataset.outcome : 'all';
    }

    function update(outcome) {
        show(outcome, search.value);
        if (search.value.trim() !== '' && packed.length > 0 && unpacking === null)
            unpacked().then(() => show(choice(), search.value), () => {});
    }

    function remember() {
        const parts = new URLSearchParams();
        if (choice() !== 'all')
            parts.set('outcome', choice());
        if (search.value !== '')
            parts.set('text', search.value);
        history.replaceState(null, '', '#' + parts.toString());
    }

    for (const button of buttons) {
        button.addEventListener('click', () => {
            update(button.dataset.outcome);
            remember();
        });
    }
    search.addEventListener('input', () => {
        update(choice());
        remember();
    });

    // -- a picture in its full size and back

    document.addEventListener('click', event => {
        const button = event.target.closest('.zoom');
        if (button)
            button.classList.toggle('large');
    });

    // -- all at once, and keys

    function nameFold() {
        fold.textContent = cases.some(element => !element.hidden && detailsOf(element).open) ? 'Close all' : 'Open all';
    }

    fold.addEventListener('click', () => {
        const shown = cases.filter(element => !element.hidden);
        const open = !shown.some(element => detailsOf(element).open);
        for (const element of shown)
            detailsOf(element).open = open;
        nameFold();
    });
    for (const element of cases)
        detailsOf(element).addEventListener('toggle', nameFold);

    document.addEventListener('keydown', event => {
        if (event.key === '/' && event.target !== search && !event.ctrlKey && !event.metaKey && !event.altKey) {
            event.preventDefault();
            search.focus();
        } else if (event.key === 'Escape' && event.target === search) {
            search.value = '';
            search.dispatchEvent(new Event('input'));
        }
    });

    // -- what the address asks for

    function decoded(text) {
        try {
            return decodeURIComponent(text);
        } catch (error) {
            return text;
        }
    }

    function follow() {
        const asked = location.hash.slice(1);
        const element = cases.find(each => each.id === asked || each.id === decoded(asked));
        if (element) {
            search.value = '';
            show('all', '');
            detailsOf(element).open = true;
            fill(element).then(() => element.scrollIntoView());
            return;
        }
        const start = new URLSearchParams(asked);
        search.value = start.get('text') || '';
        update(buttons.some(button => button.dataset.outcome === start.get('outcome')) ? start.get('outcome') : 'all');
    }

    for (const time of document.querySelectorAll('time'))
        time.textContent = new Date(time.dateTime).toLocaleString(undefined, { dateStyle: 'medium', timeStyle: 'medium' });

    addEventListener('hashchange', follow);
    follow();
    nameFold();
})();
