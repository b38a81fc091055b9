'use strict';
// Filters the cases by outcome (the buttons) and by text (the search field). The choice is kept in
// the address, so that a filtered report can be passed on as a link.
(function () {
    const cases = Array.from(document.querySelectorAll('.case'));
    const buttons = Array.from(document.querySelectorAll('.counts button'));
    const search = document.getElementById('search');
    const none = document.getElementById('none');

    function show(outcome, text) {
        const wanted = text.trim().toLowerCase();
        let shown = 0;
        for (const element of cases) {
            const fits = (outcome === 'all' || element.dataset.outcomes.split(' ').includes(outcome))
                && (wanted === '' || element.textContent.toLowerCase().includes(wanted));
            element.hidden = !fits;
            shown += fits ? 1 : 0;
        }
        none.hidden = shown > 0;
        for (const button of buttons)
            button.setAttribute('aria-pressed', String(button.dataset.outcome === outcome));
    }

    function choice() {
        const pressed = buttons.find(button => button.getAttribute('aria-pressed') === 'true');
        return pressed ? pressed.dataset.outcome : 'all';
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
            show(button.dataset.outcome, search.value);
            remember();
        });
    }
    search.addEventListener('input', () => {
        show(choice(), search.value);
        remember();
    });

    const start = new URLSearchParams(location.hash.slice(1));
    search.value = start.get('text') || '';
    show(buttons.some(button => button.dataset.outcome === start.get('outcome')) ? start.get('outcome') : 'all',
         search.value);
})();
