package tests;

/** An interface whose two sides can pass each other around. */
interface IPeer {
    /** What it does is the implementation's matter; gives a text. */
    String visit(IPeer visitor, int number);
    /** Gives the argument back. */
    IPeer giveBack(IPeer other);
    oneway void tell(int number);
}
