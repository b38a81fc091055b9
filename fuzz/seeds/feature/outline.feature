# language: en
@ui @slow # why
Feature: Coffee
  Who drinks

  Background:
    Given a machine

  Scenario Outline: <many> cups
    When I pay <many>
      | coin | <many> |
    Then it says
      """json
      {"cups": <many>}
      """
    @few
    Examples: few
      | many |
      | 1    |
      | \|\n |

  Rule: milk
    Example: white
      * a cow
