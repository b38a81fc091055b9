// Driven by data: the records of a sheet decide what is typed and what is expected.
import * as book from 'addressbook.js';

function main() {
    const people = testData.dataset("contacts.xlsx").map(record => ({
        name: testData.field(record, "name"),
        address: testData.field(record, "address"),
        group: testData.field(record, "group"), // the tab on which the contact has to be
    }));
    book.start();

    test.startSection("Add");
    for (const person of people)
        book.add(person.name, person.address);
    test.endSection();

    for (const group of ["ABC", "DEF", "GHI", "XYZ"]) {
        test.startSection(`Tab ${group}`);
        const expected = people.filter(person => person.group == group)
            .map(person => `${person.name}: ${person.address}`);
        test.compare(book.contactsOf(group).sort().join("\n"), expected.sort().join("\n"), "its contacts");
        test.endSection();
    }
}
