import * as names from 'names.js';
import * as book from 'addressbook.js';

function main() {
    book.start();
    book.add("Ada", "London");
    book.add("Alan", "Manchester");

    test.startSection("Edit");
    book.showGroup("ABC");
    book.select("Alan");
    book.editAddress("Wilmslow");
    test.compare(book.contactsOf("ABC").join(), "Alan: Wilmslow,Ada: London", "the address is changed");
    test.endSection();

    test.startSection("Remove");
    book.select("Ada");
    book.removeSelected();
    test.compare(book.contactsOf("ABC").join(), "Alan: Wilmslow", "the other contact is left");
    test.endSection();

    test.startSection("A name that is there already");
    book.add("Alan", "Wilmslow");
    test.compare(waitForObject(names.messageText).text, 'The name "Alan" already exists.');
    clickButton(waitForObject(names.messageOk));
    test.compare(book.contactsOf("ABC").length, 1, "it is not added again");
    test.endSection();
}
